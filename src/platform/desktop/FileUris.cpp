// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/FileUris.h"

#include "base/PathBytes.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

QString fileUriOfPath(const QString &path)
{
    return u"file://"_s % QString::fromLatin1(bytesOfPath(path).toPercentEncoding("/"));
}

QString pathOfFileUri(const QString &uri)
{
    const QByteArray bytes = uri.toUtf8();
    for (const QByteArrayView start : {QByteArrayView("file:///"), QByteArrayView("file://localhost/")}) {
        if (!bytes.toLower().startsWith(start))
            continue;
        const QByteArray path = QByteArray::fromPercentEncoding(bytes.mid(start.size() - 1));
        return path.contains('\0') ? QString() : pathOfBytes(path);
    }
    return {};
}

std::pair<QStringList, QStringList> pathsOfUris(const QStringList &uris)
{
    std::pair<QStringList, QStringList> sorted;
    for (const QString &uri : uris) {
        const QString path = pathOfFileUri(uri);
        (path.isNull() ? sorted.second : sorted.first).append(path.isNull() ? uri : path);
    }
    return sorted;
}

} // namespace cvtamber
