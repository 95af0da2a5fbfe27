// Sizes that several rooms share.
#pragma once

#include <cstddef>

// Room for a file name with its directory, the terminator included. A longer path counts as one
// that can't be opened.
constexpr std::size_t kPathSize = 255;
