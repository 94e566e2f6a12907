// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/HanziReadings.h"

namespace cvtamber::HanziReadings {

#include "chat/text/HanziReadings.inc"

const char32_t *const Strings = Pool;

} // namespace cvtamber::HanziReadings
