// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/bluetooth/AdapterWatcher.h"

#include <QBluetoothLocalDevice>

namespace cvtamber {

// The watcher of platforms on which Qt's own view of the adapter is enough.
class LocalDeviceWatcher final : public AdapterWatcher
{
public:
    LocalDeviceWatcher();

    BluetoothCentral::State state() const override { return _state; }
    QString stateText() const override;
    bool isServiceRunning() const override { return true; }
    void setChanged(const std::function<void()> &changed) override { _changed = changed; }

private:
    void update();

    QBluetoothLocalDevice _device;
    BluetoothCentral::State _state = BluetoothCentral::State::Unknown;
    bool _isDenied = false;
    std::function<void()> _changed;
};

} // namespace cvtamber
