// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/BusAddress.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace cvtamber::BusAddress {

namespace {

using namespace Qt::StringLiterals;

// The second is the first on systems where /var/run is a link; others may have either.
const QStringList SystemBusPaths{u"/run/dbus/system_bus_socket"_s, u"/var/run/dbus/system_bus_socket"_s};

bool isSameFile(const QString &a, const QString &b)
{
    if (QDir::cleanPath(a) == QDir::cleanPath(b))
        return true;
    struct stat first
    {};
    struct stat second
    {};
    return ::stat(QFile::encodeName(a).constData(), &first) == 0 &&
           ::stat(QFile::encodeName(b).constData(), &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

// The paths of the sockets that an address names.
QStringList socketPaths(const QString &address)
{
    QStringList paths;
    for (const QString &alternative : address.split(u';')) {
        if (!alternative.startsWith(u"unix:"))
            continue;
        for (const QString &part : alternative.section(u':', 1).split(u',')) {
            if (part.section(u'=', 0, 0) == u"path")
                paths.append(
                    QFile::decodeName(QByteArray::fromPercentEncoding(part.section(u'=', 1).toUtf8())));
        }
    }
    return paths;
}

} // namespace

QString ofSystemBus()
{
    return u"unix:path="_s + SystemBusPaths.constLast();
}

bool isSystemBus(const QString &address)
{
    for (const QString &path : socketPaths(address)) {
        for (const QString &systemPath : SystemBusPaths) {
            if (isSameFile(path, systemPath))
                return true;
        }
    }
    return false;
}

} // namespace cvtamber::BusAddress
