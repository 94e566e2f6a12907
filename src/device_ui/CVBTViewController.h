// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "base/InterfaceBase.h"
#include "device/CVBluetoothManager.h"
#include "ui/TableViewController.h"

namespace cvtamber {

struct AppContext;

// Told once by each picker.
class CVBTViewDelegate : public InterfaceBase
{
public:
    // Null when the person cancelled.
    virtual void didSelectBTDevice(const CVBTPeripheralPtr &device) = 0;
};

// The devices that a scan finds, for a person to choose one: a row for each, in the order found, and a last row that
// says that the search goes on, or what keeps Bluetooth from searching. A device that is seen but does not answer gets
// no row. When 25 seconds bring none, the last row says what to look at: another thing where a device was seen than
// where none was.
//
// The scan runs from viewDidAppear until the person has chosen or cancelled, or the picker is gone; a radio that comes
// back is made to scan again. Thread: main thread. Owner: whoever presents it, which is the delegate (weak) and dismisses it.
class CVBTViewController final : public TableViewController, public CVBluetoothManagerDelegate
{
    Q_OBJECT

public:
    explicit CVBTViewController(AppContext &context);
    ~CVBTViewController() override;

    void setDelegate(const std::weak_ptr<CVBTViewDelegate> &delegate) { _delegate = delegate; }

    int numberOfRows(int section) const override;
    TableCell cellForRow(IndexPath path) const override;
    QString titleForHeader(int section) const override;
    QString footerButtonTitle() const override;
    quintptr rowIdentity(IndexPath path) const override;

    void newDeviceFound(const CVBTPeripheralPtr &device) override;
    void bluetoothStateChanged() override;

protected:
    void viewWillAppear() override;
    void viewDidAppear() override;
    void viewDidDisappear() override;
    void didSelectRow(IndexPath path) override;
    void footerButtonActivated() override;

private:
    TableCell deviceCell(const CVBTPeripheral &device) const;
    TableCell waitCell() const;
    // What keeps the radio from searching and what a person can do about it; empty when nothing does.
    QString radioProblem() const;
    void tellRadioProblem();
    void watchForSilence();
    void tellSilence();
    void setHint(const char *hint);
    void cancelButtonClicked();
    void answer(const CVBTPeripheralPtr &device);

    AppContext &_context;
    std::weak_ptr<CVBTViewDelegate> _delegate;
    bool _isScanning = false;
    bool _isAnswered = false;
    DelayedCall _silence;
    // A key of the texts, for the last row after a silence; null before.
    const char *_hint = nullptr;
};

} // namespace cvtamber
