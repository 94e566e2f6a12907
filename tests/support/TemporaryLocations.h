// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Locations.h"

#include <QDir>
#include <QTemporaryDir>

namespace cvtamber {

// Places in a tree of their own, which goes with this object.
class TemporaryLocations final : public Locations
{
public:
    QString documentsFolder() override { return folder(QStringLiteral("Documents")); }
    QString stateFolder() override { return folder(QStringLiteral("State")); }
    QString temporaryFolder() override { return folder(QStringLiteral("Temporary")); }

private:
    QString folder(const QString &name)
    {
        QString path = _root.filePath(name);
        QDir().mkpath(path);
        return path;
    }

    QTemporaryDir _root;
};

} // namespace cvtamber
