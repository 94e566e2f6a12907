// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber {

enum class VerbId { Scan, Info, Ls, Get, Put, Emboss, Rm, Grade, Chat, Board, Batch, Encode, Decode, Pinyin };

// One verb with its operand and options, checked as far as that goes without a device.
struct VerbRequest
{
    VerbId verb = VerbId::Scan;
    QString operand; // NAME, FILE or "-"; null when none was given
    QString output;  // get: a path or "-"; null for standard output
    QString as;      // put: the name on the device, always set
    bool backTranslate = false;
    bool translate = false;
    bool force = false;
    bool toMarks = false;
    bool json = false;
    int language = 0;
    int grade = 0;

    // True when the verb takes standard input for itself.
    bool readsInput() const
    {
        return verb == VerbId::Chat || verb == VerbId::Board || verb == VerbId::Encode ||
               verb == VerbId::Decode || verb == VerbId::Pinyin ||
               ((verb == VerbId::Put || verb == VerbId::Emboss) && operand == QStringLiteral("-"));
    }
};

} // namespace cvtamber
