// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace cvtamber {

struct MailAttachment
{
    QByteArray bytes;
    QString mimeType;
    QString fileName;
};

struct MailMessage
{
    QString subject;
    // Plain text.
    QString body;
    std::optional<MailAttachment> attachment;
};

// Hands a message to the person's mail program, which shows it before anything is sent.
//
// Thread: main thread. Owner: made at start-up, outlives the screens.
class MailComposer : public InterfaceBase
{
public:
    // False when there is no mail program: then nobody is to be offered one.
    virtual bool canSendMail() = 0;
    // `finished` runs once, from the loop, when the message has been handed over or could not be: false then.
    virtual void compose(const MailMessage &message, std::function<void(bool handedOver)> finished) = 0;
};

} // namespace cvtamber
