"""Case files: one text with what is sent to the program and what has to come of it.

    What the case shows, in a sentence.
    --- KEYWORD [ARGUMENTS]
    text of the section
    === What the next request shows
    --- ...

The sections in front of the first "===" line belong to all requests: the files are made once, at
the start, and the environment holds throughout. A case without such a line is one request. The
requests of a case share one folder, so each finds what the one before it has left.

    env             variables, NAME=value; a bare NAME takes the variable away
    post            makes the request a form post; its fields as sent, one a line, without the "&"
    submit          the form of the answer before, sent back as a browser does; lines NAME=typed
                    text change or add a field
    file NAME       a file to make before the request; a NAME that ends in "/" is a folder, one
                    that ends in "|" a pipe
    without NAME    a template that isn't there
    closed STREAM   stdin, stdout or stderr, closed before the program starts
    taken KIND      the name of the trace file is taken: by a "directory", a "pipe", a "full" device
    stdout          the whole answer
    page NAME [SAVE [DIRECTORY]]
                    instead of stdout: the form page of the file NAME, one "name | value |
                    description" a row, with SAVE preset in the save field
    faults          instead of stdout: the failure page with these texts below its title
    stderr          standard error; nothing when the section is missing
    exit N          the exit value; 1 when the section is missing
    after NAME      a file that is new or has changed; no other file may
    trace [FOLDER]  a trace file: its tree of records (see trace_file.py), or any when left empty
    blocks          blocks of records for the tree, beside those of trace_blocks.txt
    report [FOLDER] a failure report, as if made on Thu Jan  1 12:00:00 2004 by code level 9.9.9 of
                    Jan  1 2004 in the process 4711

Each line of a text ends in a line feed, unless a backslash ends it. \\x20, \\r and the like stand
for bytes, {x*80} for a run of them, {cwd} for the folder, {1010|name|value} for a message with its
inserts. A heading that ends in " python" makes the text an expression that gives the real one.
"""

import dataclasses
import re

KEYWORDS = ("env post submit file without closed taken stdout page faults stderr exit after trace "
            "blocks report").split()
ENCODING = "latin-1"  # bytes pass through unchanged


@dataclasses.dataclass
class Request:
    title: str
    sections: list  # of (keyword, arguments, text)

    def find(self, *keywords):
        return [section for section in self.sections if section[0] in keywords]

    def text(self, keyword, default=None):
        found = self.find(keyword)
        return found[-1][2] if found else default

    def argument(self, keyword, default):
        found = self.find(keyword)
        return found[-1][1] if found else default


def read_case(path):
    """The requests of a case; the first one holds the sections that belong to all."""
    with open(path, encoding=ENCODING, newline="\n") as stream:
        parts = re.split(r"^=== ?(.*)\n", stream.read(), flags=re.MULTILINE)
    common = Request("", read_sections(parts[0], path))
    requests = [Request(title, read_sections(text, path))
                for title, text in zip(parts[1::2], parts[2::2])]
    return common, requests or [Request("", [])]


def read_sections(text, path):
    if re.search(r"[ \t]$", text, re.MULTILINE):
        raise SystemExit(f"{path}: a line ends in a blank; write it as \\x20")
    parts = re.split(r"^--- (\w+) ?(.*)\n", text, flags=re.MULTILINE)[1:]
    return [read_section(*part, path) for part in zip(parts[::3], parts[1::3], parts[2::3])]


def read_section(keyword, arguments, text, path):
    if keyword not in KEYWORDS:
        raise SystemExit(f"{path}: no section is called {keyword}")
    if arguments.endswith(" python"):
        return keyword, arguments.removesuffix(" python"), eval(text)
    return keyword, arguments, text


def decode(text):
    """The bytes that a text of a case stands for, placeholders aside."""
    text = text.replace("\\\n", "")
    return re.sub(r"\\(x[0-9a-f]{2}|.)", lambda m: unescape(m[1]), text)


def unescape(escape):
    if escape[0] == "x":
        return chr(int(escape[1:], 16))
    return {"r": "\r", "n": "\n", "t": "\t", "\\": "\\"}[escape]
