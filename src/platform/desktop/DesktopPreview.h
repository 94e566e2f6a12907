// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/DocumentPreview.h"

#include <QDBusConnection>
#include <QObject>

namespace cvtamber {

class RunLoop;

// The desktop's opener: xdg-open, else the portal.
class DesktopPreview final : public QObject, public DocumentPreview
{
    Q_OBJECT

public:
    DesktopPreview(RunLoop &runLoop, const QDBusConnection &bus);

    void show(const QString &path, std::function<void(bool shown)> finished) override;

private:
    void showThroughPortal(const QString &path, const std::function<void(bool shown)> &finished);

    RunLoop &_runLoop;
    QDBusConnection _bus;
};

} // namespace cvtamber
