// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/DesktopPreview.h"

#include "platform/desktop/DesktopCommand.h"
#include "platform/desktop/PortalRequest.h"

#include <QDBusUnixFileDescriptor>
#include <QFile>

namespace cvtamber {

using namespace Qt::StringLiterals;

DesktopPreview::DesktopPreview(RunLoop &runLoop, const QDBusConnection &bus)
    : _runLoop(runLoop)
    , _bus(bus)
{}

void DesktopPreview::show(const QString &path, std::function<void(bool shown)> finished)
{
    DesktopCommand::start(
        _runLoop, DesktopCommand::find(u"xdg-open"_s), {path},
        [this, path, finished = std::move(finished)](bool hasWorked) {
            if (hasWorked)
                finished(true);
            else
                showThroughPortal(path, finished);
        },
        this);
}

void DesktopPreview::showThroughPortal(const QString &path, const std::function<void(bool shown)> &finished)
{
    QFile file(path);
    if (!_bus.isConnected() || !file.open(QIODevice::ReadOnly)) {
        finished(false);
        return;
    }
    const QVariant descriptor = QVariant::fromValue(QDBusUnixFileDescriptor(file.handle()));
    PortalRequest::start(
        _bus, {u"OpenURI"_s, u"OpenFile"_s, {QString(), descriptor}, {}},
        [finished](PortalRequest::Outcome outcome, const QVariantMap &) {
            finished(outcome != PortalRequest::Outcome::Failed);
        },
        this);
}

} // namespace cvtamber
