// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVFileData.h"
#include "device/TextCodec.h"

#include <QList>

namespace cvtamber {

// What may be a file's name on the device, and what may be in a text for it. Pure functions; each gives a
// sentence for a person, empty when nothing is wrong.

// Names that the device could not list again or would take for commands: empty ones, and those with white
// space, braces, slashes or control characters.
QString fileNameProblem(const QString &name);

// A listing is decoded by the bare code page, so a name that the device's own codes change could never be
// asked for again.
QString unlistableNameProblem(const QString &name, int keyboardLanguage, StringEncoding encoding);

// An opening brace begins a command, wherever its closing brace may be: one of the program's own commands
// would supply it. The sentence names the line.
QString deviceCommandProblem(const QString &text);

// That a name is not among the files, with those that differ in letter case only.
QString noSuchFileSentence(const QString &name, const QList<CVFileData> &files);

} // namespace cvtamber
