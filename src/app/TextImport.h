// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

#include <QByteArrayView>
#include <QString>

namespace cvtamber {

class StoreDisk;

// The largest file that is taken in: 5 MiB, some five thousand pages of braille. The window stands still for about a second per
// MiB while a text is laid out.
inline constexpr qint64 LargestImport = qint64{5} * 1024 * 1024;
// The most characters in a row without a place for a line break. What has more is no writing, and the time to lay it out grows
// with its square.
inline constexpr qsizetype LongestWord = 4096;

// What became of a handed-over file.
struct ImportedText
{
    enum class Outcome {
        Ok,
        Unreadable,
        TooLarge,
        // Neither UTF-8 nor the language's code page, with zero characters, or with a word that is too long: no text.
        NotText,
    };

    Outcome outcome = Outcome::Ok;
    // Empty for an empty file.
    QString text;
    // For Unreadable: a sentence part.
    QString why;

    bool ok() const { return outcome == Outcome::Ok; }
};

// UTF-8, with or without its mark; else the code page of the language's first two letters: "pl" and "cs" 1250, "el" 1253,
// "ar" 1256, every other 1252. Null when it is neither. Pure.
QString textOfBytes(QByteArrayView bytes, const QString &preferredLanguage);

// Main thread; reads at most LargestImport bytes.
ImportedText readTextFile(const StoreDisk &disk, const FileURL &url, const QString &preferredLanguage);

} // namespace cvtamber
