// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/FileChooser.h"

#include <QDBusConnection>
#include <QObject>

namespace cvtamber {

// The desktop portal's window for choosing files. Where no portal answers the choice has failed at once.
class DesktopFileChooser final : public QObject, public FileChooser
{
    Q_OBJECT

public:
    explicit DesktopFileChooser(const QDBusConnection &bus);

    void choose(const QString &title, std::function<void(const Choice &choice)> chosen) override;

private:
    QDBusConnection _bus;
    bool _isOpen = false;
};

} // namespace cvtamber
