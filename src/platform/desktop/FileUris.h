// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <utility>

namespace cvtamber {

// "file:///home/ann/a%20b.txt" of an absolute path and back, byte for byte, also for names that are not UTF-8
// (PathBytes.h). Pure; any thread.
QString fileUriOfPath(const QString &path);
// Null when the URI does not name a file of this computer.
QString pathOfFileUri(const QString &uri);
// The paths of those that name files of this computer, and the rest as it came.
std::pair<QStringList, QStringList> pathsOfUris(const QStringList &uris);

} // namespace cvtamber
