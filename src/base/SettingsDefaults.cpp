// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/SettingsDefaults.h"

#include <QStandardPaths>

namespace cvtamber {

SettingsDefaults::SettingsDefaults(const QString &file)
    : _settings(file, QSettings::IniFormat)
{}

QString SettingsDefaults::standardFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/cvtamber/settings.ini");
}

QVariant SettingsDefaults::value(const QString &key)
{
    return _settings.value(key);
}

void SettingsDefaults::setValue(const QString &key, const QVariant &value)
{
    _settings.setValue(key, value);
    _settings.sync();
}

void SettingsDefaults::synchronize()
{
    _settings.sync();
}

} // namespace cvtamber
