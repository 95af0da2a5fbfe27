// The names that the services make at run time from the service name: variables and files.
#pragma once

#include "BoundedText.h"
#include "Sizes.h"

// The value of the environment variable named by the service name and `suffix`, as DNZ_TRACE
// by "_TRACE". Null when it isn't set or the services aren't started. Borrowed from the
// environment.
const char* serviceVariable(const char* suffix);

// The directory for trace files and reports, from the service variable _PATH. Null when the
// variable isn't set or is empty, which means the working directory.
const char* serviceDirectory();

// Appends `directory`, and a "/" unless it ends in one.
void appendDirectory(BoundedText& path, const char* directory);

// Appends the name of this process's file of one kind: eight characters from the service name
// and the reduced process id, a point and `extension`.
void appendServiceFileName(BoundedText& path, const char* extension);
