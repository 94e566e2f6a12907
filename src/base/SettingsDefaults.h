// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/UserDefaults.h"

#include <QSettings>

namespace cvtamber {

// The person's settings in a file that can be read and edited: "settings.ini" in the configuration folder.
//
// Processes that change different keys at the same time keep each other's changes.
class SettingsDefaults final : public UserDefaults
{
public:
    // Made when the first value is set. Where it cannot be read there are no values, where it cannot be written a value
    // lasts until the end of the process: see isStored().
    explicit SettingsDefaults(const QString &file = standardFile());

    // $XDG_CONFIG_HOME/cvtamber/settings.ini on Linux and the like.
    static QString standardFile();

    QVariant value(const QString &key) override;
    void setValue(const QString &key, const QVariant &value) override;
    void synchronize() override;

    // False after a value could not be written or the file could not be read.
    bool isStored() const { return _settings.status() == QSettings::NoError; }

private:
    QSettings _settings;
};

} // namespace cvtamber
