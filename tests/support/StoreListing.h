// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <map>

namespace cvtamber {

class StoreDisk;
class TamberStorage;

// All that a store lists, as a value. The key is where it is, below the root; the value is what is in it:
//   ActiveUsers/UUID                       Anna|Berg|Anna B
//   ActiveUsers/UUID/Letter.tamber         the text, as the disk has it now
//   ActiveUsers/UUID/UUID                  the folder's name, null when it has none
//   ActiveUsers/UUID/UUID/Letter.tamber    the text
// What is listed twice has a second key with " (again)"; a document that cannot be read has "(unreadable)".
using StoreListing = std::map<QString, QString>;

StoreListing listingOf(TamberStorage &storage, const StoreDisk &disk);
// What the first lacks, has too much or has otherwise than the second; empty when they are equal.
QString difference(const StoreListing &found, const StoreListing &expected);

} // namespace cvtamber
