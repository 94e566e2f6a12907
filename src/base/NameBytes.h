// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace cvtamber {

// How long a file name is where it is kept. Pure functions; any thread.

// The usual file systems and sync programs take names of up to this many bytes.
inline constexpr qsizetype MaxNameBytes = 255;

// The lone surrogate stands for a byte of a file name that is not UTF-8 (FileOperations.h).
inline bool isOddByte(QChar unit)
{
    return unit >= QChar(0xDC80) && unit <= QChar(0xDCFF);
}

// In UTF-8; an odd byte is one.
qsizetype nameBytes(QStringView name);

// As much of the start as fits, without taking apart what a person sees as one character. Only where the first
// such character is too long by itself it is cut between code points.
QString cutToBytes(const QString &name, qsizetype bytes);

} // namespace cvtamber
