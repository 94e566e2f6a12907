// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <functional>

namespace cvtamber {

// The names that the store gives to files and folders, and what it makes of names that come from people,
// devices, files and other programs. Pure functions; any thread.

inline constexpr QStringView DocumentExtension = u"tamber";
// Of the two registries.
inline constexpr QStringView ActiveUsersName = u"ActiveUsers";
inline constexpr QStringView ArchivedUsersName = u"ArchivedUsers";
inline constexpr QStringView UserRecordName = u"user.txt";
inline constexpr QStringView FolderRecordName = u"folder.dat";

// The title as a file can carry it: separators and control bytes become "-", leading dots go, one without
// anything to see is "Untitled", one whose file name would be longer than 255 bytes is cut at a character. Composed form
// (NFC). On Windows also what that system forbids. A title that needs no repair comes back as it is.
QString repairedTitle(const QString &title);

// The title itself when it is free, else the first of "Letter 2", "Letter 3" ... that is; repaired, and cut so
// that the number fits.
QString nextFreeTitle(const QString &title, const std::function<bool(const QString &title)> &isTaken);

// "Letter.tamber" of a title, repaired.
QString documentFileName(const QString &title);

// Names of documents are the same title when these are equal: letter case folded, composed form.
QString comparableName(const QString &name);

// A display name or a person's name as a line of a record can carry it: line ends and other control
// characters become spaces.
QString singleLine(const QString &text);

// "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX", upper case.
QString freshUuidName();

// One of the store's own names, which tells nothing of a person: of a record, of the two registries, or a UUID.
bool isStoreName(const QString &name);

// LIKE: "?" is one character, "*" any run of them, empty and with separators too; the rest is itself, letter
// case too. Linear in the text for one "*", never worse than pattern times text.
bool isLike(QStringView text, QStringView pattern);

} // namespace cvtamber
