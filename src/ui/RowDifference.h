// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <vector>

namespace cvtamber {

// A section's rows by identity; 0 where a row is known by its place only.
using RowIdentities = std::vector<quintptr>;

// Where each old row stands among the new ones, -1 where it is gone. The n-th of several rows with one identity (0
// among them) stays the n-th of them. Linear.
std::vector<int> placesOf(const RowIdentities &old, const RowIdentities &now);

// Where each old section stands among the new ones, -1 where it is gone. Equal sections at the start and at the end
// are the same ones; those between are paired in order.
std::vector<int> sectionPlaces(const std::vector<RowIdentities> &old, const std::vector<RowIdentities> &now);

// Whether each of these different places may stay where it is when the fewest rows move.
std::vector<bool> stayingRows(const std::vector<int> &places);

} // namespace cvtamber
