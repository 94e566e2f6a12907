// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber {

// Why a call of a client was refused, as it goes over the bus.
struct BusError
{
    QString name; // "org.bluez.Error.Failed"
    QString text;
};

// The refusals of the Bluetooth daemon, in its words.
namespace BusErrors {

BusError failed(const QString &text);
BusError inProgress();
BusError notReady();
BusError notConnected();
BusError notSupported();
BusError notPermitted(const QString &text);
BusError doesNotExist();
BusError alreadyExists();
BusError invalidArguments(const QString &text);
// The bus's own kind, for what is asked of no one.
BusError standard(const QString &kind, const QString &text);

} // namespace BusErrors

} // namespace cvtamber
