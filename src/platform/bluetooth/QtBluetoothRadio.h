// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/CallGroup.h"
#include "device/BluetoothCentral.h"
#include "platform/bluetooth/AdapterWatcher.h"
#include "platform/bluetooth/SharedLinks.h"

namespace cvtamber {

class QtBluetoothCentral;

// The computer's Bluetooth through Qt, which all centrals of the program share.
//
// Needs a QCoreApplication. Main thread. Owner: start-up and the centrals, whichever lasts longer. Made with
// create() only.
class QtBluetoothRadio final : public std::enable_shared_from_this<QtBluetoothRadio>
{
public:
    // The run loop must outlive the radio.
    static std::shared_ptr<QtBluetoothRadio> create(RunLoop &runLoop);
    QtBluetoothRadio(const QtBluetoothRadio &) = delete;
    QtBluetoothRadio &operator=(const QtBluetoothRadio &) = delete;
    ~QtBluetoothRadio();

    std::unique_ptr<BluetoothCentral> makeCentral();

    // The centrals' side.
    void addCentral(QtBluetoothCentral *central) { _centrals.append(central); }
    void removeCentral(QtBluetoothCentral *central) { _centrals.removeAll(central); }
    BluetoothCentral::State state() const { return _now.state; }
    QString stateText() const { return _now.text; }
    SharedLinks &sharedLinks() { return _sharedLinks; }

private:
    // What the watcher said. Kept, because each of its changes counts, however soon the next one comes.
    struct Situation
    {
        BluetoothCentral::State state = BluetoothCentral::State::Unknown;
        QString text;
        bool isServiceRunning = false;
    };

    explicit QtBluetoothRadio(RunLoop &runLoop);
    void postChange();
    void change(const Situation &situation);

    RunLoop &_runLoop;
    std::unique_ptr<AdapterWatcher> _watcher;
    SharedLinks _sharedLinks;
    QList<QtBluetoothCentral *> _centrals;
    Situation _now;
    CallGroup _calls;
};

} // namespace cvtamber
