// SPDX-License-Identifier: GPL-3.0-or-later
#include "device_ui/CVConnectViewController.h"

#include "app/AppContext.h"
#include "base/SystemLog.h"
#include "device/CVBTDevice.h"
#include "device/Reconnector.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// Some link types report nothing once they are up. The time-outs of one attempt add up to about 25 seconds.
constexpr auto connectLimit = 45s;

} // namespace

CVConnectViewController::CVConnectViewController(AppContext &context)
    : CVConnectViewController(context, nullptr)
{}

CVConnectViewController::CVConnectViewController(AppContext &context,
                                                 const BluetoothPeripheralPtr &peripheral)
    : ViewController(context.presenter)
    , _context(context)
    , _peripheral(peripheral)
    , _connectLimit(context.runLoop)
{
    _context.device.addLinkObserver(*this);
}

CVConnectViewController::~CVConnectViewController()
{
    _context.device.removeLinkObserver(*this);
    _context.log.info(QStringLiteral("CVConnectViewController::dealloc"));
}

QString CVConnectViewController::connectingText() const
{
    return localized("Connecting to Corvane");
}

CVConnectViewController::Result CVConnectViewController::result() const
{
    switch (_step) {
    case Step::Connected:
        return Result::Connected;
    case Step::Failed:
        return Result::NotConnected;
    case Step::Idle:
    case Step::Choosing:
    case Step::Connecting:
        break;
    }
    return Result::NoResult;
}

QString CVConnectViewController::resultText() const
{
    switch (result()) {
    case Result::Connected:
        return localized("Connected!");
    case Result::NotConnected:
        return localized("Not connected!");
    case Result::NoResult:
        break;
    }
    return {};
}

QString CVConnectViewController::retryTitle() const
{
    return localized("Retry");
}

QString CVConnectViewController::cancelTitle() const
{
    return localized("Cancel");
}

QString CVConnectViewController::doneTitle() const
{
    return localized("Done");
}

std::shared_ptr<CVConnectViewController> CVConnectViewController::self()
{
    return std::static_pointer_cast<CVConnectViewController>(shared_from_this());
}

void CVConnectViewController::setStep(Step step, bool isBusy)
{
    _step = step;
    _isBusy = isBusy;
    emit changed();
}

void CVConnectViewController::viewDidAppear()
{
    if (_isAnswered)
        return;
    // A person chooses now.
    _context.reconnector.stop();
    if (!_peripheral)
        askForBluetoothDevice();
    else if (_step == Step::Idle)
        beginConnecting();
}

void CVConnectViewController::askForBluetoothDevice()
{
    _peripheral.reset();
    setStep(Step::Choosing, _isBusy);
    const auto picker = std::make_shared<CVBTViewController>(_context);
    picker->setDelegate(self());
    picker->setModalPresentationStyle(PresentationStyle::FormSheet);
    presentViewController(picker, true);
}

void CVConnectViewController::didSelectBTDevice(const CVBTPeripheralPtr &device)
{
    if (!device) {
        tellDelegate(CVConnectViewDelegate::CancelButton);
        return;
    }
    _peripheral = device->peripheral();
    dismissViewController(true, [weak = std::weak_ptr(self())] {
        const auto dialog = weak.lock();
        if (dialog && !dialog->hasGone())
            dialog->beginConnecting();
    });
}

void CVConnectViewController::beginConnecting()
{
    // The heading that says so takes the focus.
    setStep(Step::Connecting, true);
    _connectLimit.start(connectLimit, [this] { failed(); });
    // The scan may still hold a link to the device, which would end in the middle of the attempt.
    _context.manager.releasePeripherals([weak = std::weak_ptr(self()), peripheral = _peripheral] {
        if (const auto dialog = weak.lock())
            dialog->connectToPeripheral(peripheral);
    });
}

void CVConnectViewController::connectToPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    if (_step != Step::Connecting || _peripheral != peripheral)
        return;
    _context.device.connectAsCVCommWithPeripheral(peripheral);
}

void CVConnectViewController::linkStateChanged(int state)
{
    // While the picker is up it is the rest of an attempt that was left.
    if (_step == Step::Idle || _step == Step::Choosing || _isAnswered)
        return;
    if (state == CVDeviceStateDelegate::ConnectedAndIdentified)
        connected();
    else if (state == CVDeviceStateDelegate::ConnectFailedOrLost)
        failed();
}

void CVConnectViewController::linkLost(const QString &)
{
    if (_step == Step::Connecting || _step == Step::Connected)
        failed();
}

void CVConnectViewController::connected()
{
    if (_step == Step::Connected)
        return;
    _connectLimit.cancel();
    setStep(Step::Connected, false);
    presenter().announce(resultText());
    if (const auto delegate = _delegate.lock())
        delegate->cvConnectViewDeviceConnected();
}

void CVConnectViewController::failed()
{
    if (_step == Step::Failed)
        return;
    const bool wasConnected = _step == Step::Connected;
    _connectLimit.cancel();
    setStep(Step::Failed, false);
    presenter().announce(wasConnected ? localized("The connection to the Corvane was lost.") : resultText());
}

void CVConnectViewController::retryButtonClicked()
{
    if (!isRetryVisible() || !takesActions())
        return;
    letGoOfLink();
    setStep(Step::Choosing, true);
    askForBluetoothDevice();
}

void CVConnectViewController::cancelButtonClicked()
{
    if (!isCancelVisible() || !takesActions())
        return;
    // What the attempt still says is nobody's.
    _connectLimit.cancel();
    setStep(Step::Idle, false);
    actionButtonClicked(CVConnectViewDelegate::CancelButton);
}

void CVConnectViewController::doneButtonClicked()
{
    if (isDoneVisible() && takesActions())
        actionButtonClicked(CVConnectViewDelegate::DoneButton);
}

void CVConnectViewController::actionButtonClicked(CVConnectViewDelegate::Button button)
{
    if (button == CVConnectViewDelegate::CancelButton && !_isAnswered)
        letGoOfLink();
    tellDelegate(button);
}

void CVConnectViewController::tellDelegate(CVConnectViewDelegate::Button button)
{
    if (std::exchange(_isAnswered, true))
        return;
    if (const auto delegate = _delegate.lock())
        delegate->connectViewControllerDidClickedWithButton(*this, button);
}

// An attempt may leave the link up, and a late answer would connect a dialog that said otherwise or has gone.
void CVConnectViewController::letGoOfLink()
{
    _context.reconnector.stop();
    _context.device.disconnectAsCVComm();
}

} // namespace cvtamber
