// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothUuid.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace cvtamber {

// A shorter way to write to a characteristic than Qt's, where the platform has one.
//
// Thread: main thread. Owner: the queue of the link, whose end ends every write unanswered.
class CharacteristicWriter
{
public:
    using Done = std::function<void(bool success)>;

    virtual ~CharacteristicWriter() = default;

    // Asks for the characteristics of the connected device; the answer comes later.
    virtual void look() = 0;
    // Writes with response; `done` is called once, from the event loop. False when the characteristic is not known (yet).
    virtual bool write(const BluetoothUuid &service, const BluetoothUuid &characteristic,
                       const QByteArray &value, const Done &done) = 0;
};

// Of the device with that Bluetooth address; null where Qt's way is the shortest.
std::unique_ptr<CharacteristicWriter> makeCharacteristicWriter(const QString &address);

} // namespace cvtamber
