// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreContext.h"

#include "base/SystemLog.h"
#include "store/StoreNames.h"

namespace cvtamber {

namespace {

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F') || (c >= u'a' && c <= u'f');
}

bool isUuid(const QString &name)
{
    if (name.size() != 36)
        return false;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isBetweenGroups = i == 8 || i == 13 || i == 18 || i == 23;
        if (isBetweenGroups ? name[i] != u'-' : !isHexDigit(name[i]))
            return false;
    }
    return true;
}

bool isStoreName(const QString &name)
{
    return name == UserRecordName || name == FolderRecordName || name == QLatin1String("ActiveUsers") ||
           name == QLatin1String("ArchivedUsers") || isUuid(name);
}

} // namespace

QString loggedURL(const FileURL &url)
{
    if (url.isNil())
        return QStringLiteral("(null)");
    const QString &name = url.lastPathComponent();
    if (name.isEmpty())
        return url.path();
    const QString &shown = isStoreName(name) ? name : SystemLog::masked(name);
    const QString ending = url.isDirectory() ? QStringLiteral("/") : QString();
    return url.path().chopped(name.size()) % shown % ending;
}

} // namespace cvtamber
