// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace cvtamber {

// Paths and names between QString and the bytes of a POSIX file system, both ways without loss: a byte that is
// not part of valid UTF-8 is a lone low surrogate, U+DC00 and the byte. Pure functions; any thread.

// Empty when no file can have that path: it holds a zero character or some other half of a surrogate pair.
QByteArray bytesOfPath(const QString &path);
QString pathOfBytes(QByteArrayView bytes);

} // namespace cvtamber
