// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/BusError.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QVariant>

#include <functional>

namespace cvtamber {

// A client's method call, to be answered once: now, later, or never where a fault wants it so. A copy is the
// same call. The sender outlives it.
class BusCall
{
public:
    using Send = std::function<void(const QDBusMessage &)>;

    BusCall(const QDBusMessage &message, const Send &send)
        : _message(message)
        , _send(&send)
    {}

    // The unique name of the connection that asks.
    QString client() const { return _message.service(); }
    const QDBusMessage &message() const { return _message; }
    template<typename T> T argument(qsizetype index) const
    {
        return qdbus_cast<T>(_message.arguments().value(index));
    }

    // With at most one value, as all methods here have it.
    void reply(const QVariant &value = {}) const
    {
        if (_message.isReplyRequired())
            (*_send)(value.isValid() ? _message.createReply(value) : _message.createReply());
    }
    void fail(const BusError &error) const
    {
        if (_message.isReplyRequired())
            (*_send)(_message.createErrorReply(error.name, error.text));
    }

private:
    QDBusMessage _message;
    const Send *_send;
};

} // namespace cvtamber
