// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace cvtamber::TextComposition {

// The precomposed character for a base and the combining mark after it ("e", U+0301 -> U+00E9), when one of
// the device's code pages has it; 0 otherwise. Any thread.
char16_t compose(char16_t base, char16_t mark);

} // namespace cvtamber::TextComposition
