// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/CVFileData.h"
#include "text/TextCodec.h"
#include "text/TextForDevice.h"

#include <QList>

namespace cvtamber {

// What is wrong with names of files on the device and with texts for it: a sentence for a person, empty when nothing is.
// Pure functions.

// Names that the device could not list again or would take for commands, whatever its language.
QString fileNameProblem(const QString &name);

// The same for a device with this keyboard language and this code page for its listings.
QString unlistableNameProblem(const QString &name, int keyboardLanguage, StringEncoding encoding);

// An opening brace begins a command, wherever its closing brace may be: one of the program's own commands
// would supply it. The sentence names the line.
QString deviceCommandProblem(const QString &text);

// What the device does not have of a text: how many characters, and the first few of them.
QString lostCharactersSentence(const PlainText &plain);

// That a name is not among the files, with those that differ in letter case only.
QString noSuchFileSentence(const QString &name, const QList<CVFileData> &files);

} // namespace cvtamber
