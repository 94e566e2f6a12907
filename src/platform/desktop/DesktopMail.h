// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/MailComposer.h"

#include <QDBusConnection>
#include <QObject>

namespace cvtamber {

class Locations;
class RunLoop;

// The person's mail program, through the desktop portal; through xdg-email where there is no portal or it finds no
// mail program.
//
// An attachment is a file in the temporary folder until the program ends: nobody says when the mail program has read it.
class DesktopMail final : public QObject, public MailComposer
{
    Q_OBJECT

public:
    DesktopMail(RunLoop &runLoop, Locations &locations, const QDBusConnection &bus);

    bool canSendMail() override;
    void compose(const MailMessage &message, std::function<void(bool handedOver)> finished) override;

private:
    using Finished = std::function<void(bool handedOver)>;

    bool hasPortal() const;
    void composeThroughPortal(const MailMessage &message, const QString &attachment,
                              const Finished &finished);
    void composeWithCommand(const MailMessage &message, const QString &attachment, const Finished &finished);
    // Null when it cannot be written.
    QString writeAttachment(const MailAttachment &attachment);

    RunLoop &_runLoop;
    Locations &_locations;
    QDBusConnection _bus;
};

} // namespace cvtamber
