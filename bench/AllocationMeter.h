// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace cvtamber::AllocationMeter {

// Bytes on the heap of this program, Qt's included, as the allocator rounds them: the program's malloc and
// its kin stand in front of the C library's (glibc). A block that realloc moves counts twice while it is
// moved.
size_t live();
// The highest value of live() since restart().
size_t peak();
void restart();

} // namespace cvtamber::AllocationMeter
