// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace cvtamber {

// What a person's text has to become before the device may be given it. Pure functions; any thread. Cost is linear in
// the text.

// A text in characters that the device reads as they are meant.
struct PlainText
{
    static constexpr qsizetype MostExamples = 5;

    QString text;
    // Characters, each with its marks, that have no spelling on the device: a letter keeps its base, all else is "?".
    qsizetype lost = 0;
    QStringList examples; // the first few different ones of them, as a person may be shown them
};

// Typographic signs, ligatures, fractions and the like in the plain spelling that Unicode has for them, where the device
// would read another character. What it reads as it is stays: a character that comes back when it is encoded for the
// keyboard's language and decoded for the device's, and one that has a code of the device's own, whatever that decodes
// to. Never makes a brace.
PlainText plainForDevice(const QString &text, int keyboardLanguage, int cvLanguage);

// The line, from 1, that holds the first of the signs.
std::optional<qsizetype> lineOfFirst(QStringView text, QStringView signs);

// The text with "(" and ")" in place of braces.
QString withoutBraces(QString text);

} // namespace cvtamber
