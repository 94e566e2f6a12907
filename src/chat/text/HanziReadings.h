// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

namespace cvtamber::HanziReadings {

// One reading for each character from First to Last: constant data without any work at start. The rows are made
// by tools/hanzi-readings from Unicode's readings; docs/chinese.md says how.

inline constexpr char32_t First = 0x4E00;
inline constexpr char32_t Last = 0x9FA5;
inline constexpr int LongestReading = 6;

// Where a character's reading begins among the strings.
extern const std::array<std::uint16_t, Last - First + 1> Starts;
// The different readings, each with a zero after it.
extern const char32_t *const Strings;

} // namespace cvtamber::HanziReadings
