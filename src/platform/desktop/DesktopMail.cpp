// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/DesktopMail.h"

#include "base/Locations.h"
#include "base/RunLoop.h"
#include "platform/desktop/DesktopCommand.h"
#include "platform/desktop/PortalRequest.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString MailCommand = QStringLiteral("xdg-email");

// One component, whatever the title was: the mail program shows it to the person.
QString attachmentFileName(const QString &name)
{
    QString safe = name;
    for (QChar &c : safe) {
        if (c == u'/' || c == u'\0' || c.category() == QChar::Other_Control)
            c = u'-';
    }
    return safe.isEmpty() || safe.startsWith(u'.') ? QString(u'_' % safe) : safe;
}

} // namespace

DesktopMail::DesktopMail(RunLoop &runLoop, Locations &locations, const QDBusConnection &bus)
    : _runLoop(runLoop)
    , _locations(locations)
    , _bus(bus)
{
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
}

// Running, or to be started by the bus.
bool DesktopMail::hasPortal() const
{
    if (!_bus.isConnected())
        return false;
    if (_bus.interface()->isServiceRegistered(PortalRequest::service()))
        return true;
    const QDBusReply<QStringList> names = _bus.interface()->call(u"ListActivatableNames"_s);
    return names.isValid() && names.value().contains(PortalRequest::service());
}

bool DesktopMail::canSendMail()
{
    return hasPortal() || !DesktopCommand::find(MailCommand).isEmpty();
}

QString DesktopMail::writeAttachment(const MailAttachment &attachment)
{
    const QString temporary = _locations.temporaryFolder();
    if (temporary.isEmpty())
        return {};
    // One each: two messages may attach files of the same name.
    QTemporaryDir folder(temporary + u"/mail-XXXXXX");
    if (!folder.isValid())
        return {};
    QString path = folder.filePath(attachmentFileName(attachment.fileName));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(attachment.bytes) != attachment.bytes.size() ||
        !file.flush())
        return {};
    folder.setAutoRemove(false);
    return path;
}

void DesktopMail::compose(const MailMessage &message, std::function<void(bool handedOver)> finished)
{
    QString attachment;
    if (message.attachment) {
        attachment = writeAttachment(*message.attachment);
        if (attachment.isEmpty()) {
            _runLoop.performAfter({}, [finished = std::move(finished)] { finished(false); });
            return;
        }
    }
    if (hasPortal())
        composeThroughPortal(message, attachment, finished);
    else
        composeWithCommand(message, attachment, finished);
}

void DesktopMail::composeThroughPortal(const MailMessage &message, const QString &attachment,
                                       const Finished &finished)
{
    QVariantMap options{{u"subject"_s, message.subject}, {u"body"_s, message.body}};
    QFile file(attachment);
    if (!attachment.isEmpty() && file.open(QIODevice::ReadOnly)) {
        const QList<QDBusUnixFileDescriptor> descriptors{QDBusUnixFileDescriptor(file.handle())};
        options.insert(u"attachment_fds"_s, QVariant::fromValue(descriptors));
    }
    PortalRequest::start(
        _bus, {u"Email"_s, u"ComposeEmail"_s, {QString()}, options},
        [this, message, attachment, finished](PortalRequest::Outcome outcome, const QVariantMap &) {
            if (outcome == PortalRequest::Outcome::Failed)
                composeWithCommand(message, attachment, finished);
            else
                finished(true);
        },
        this);
}

void DesktopMail::composeWithCommand(const MailMessage &message, const QString &attachment,
                                     const Finished &finished)
{
    QStringList arguments{u"--utf8"_s, u"--subject"_s, message.subject, u"--body"_s, message.body};
    if (!attachment.isEmpty())
        arguments << u"--attach"_s << attachment;
    DesktopCommand::start(_runLoop, DesktopCommand::find(MailCommand), arguments, finished, this);
}

} // namespace cvtamber
