// SPDX-License-Identifier: GPL-3.0-or-later
#include "device_ui/CVBTViewController.h"

#include "app/AppContext.h"
#include "base/SystemLog.h"
#include "base/VisibleText.h"
#include "ui/Texts.h"

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// Several brief connections, of which one or two may fail by chance.
constexpr auto silenceTime = 25s;
// No address is 1, so the wait row is never taken for a device's.
constexpr quintptr waitRowIdentity = 1;

QString shownName(const CVBTPeripheral &device)
{
    return device.airName().isEmpty() ? localized("Corvane Brailler") : visibleText(device.airName());
}

} // namespace

CVBTViewController::CVBTViewController(AppContext &context)
    : TableViewController(context.presenter)
    , _context(context)
    , _silence(context.runLoop)
{}

CVBTViewController::~CVBTViewController() = default;

int CVBTViewController::numberOfRows(int) const
{
    return _isScanning ? static_cast<int>(_context.manager.devices().size()) + 1 : 1;
}

TableCell CVBTViewController::cellForRow(IndexPath path) const
{
    const auto device = _context.manager.devices().value(path.row);
    return device ? deviceCell(*device) : waitCell();
}

TableCell CVBTViewController::deviceCell(const CVBTPeripheral &device) const
{
    TableCell cell;
    cell.style = TableCell::Style::Subtitle;
    cell.text = shownName(device);
    cell.detail = visibleText(device.serialNumber().isNull() ? device.peripheral()->identifier()
                                                             : device.serialNumber());
    return cell;
}

TableCell CVBTViewController::waitCell() const
{
    TableCell cell;
    const QString problem = radioProblem();
    cell.style = problem.isEmpty() ? TableCell::Style::Wait : TableCell::Style::Centered;
    cell.canHighlight = false;
    // The same text whatever has been found: a row that is only moved by an insertion must not change with it.
    if (!problem.isEmpty())
        cell.text = problem;
    else if (_hint)
        cell.text = localized(_hint);
    else
        cell.text = localized("Looking for devices. Switch the Corvane on and keep it near.");
    return cell;
}

QString CVBTViewController::radioProblem() const
{
    switch (_context.manager.centralManager().state()) {
    case BluetoothCentral::State::Unsupported:
        return localized("Bluetooth LE is not supported on this device");
    case BluetoothCentral::State::Unauthorized:
        return localized("CVTamber may not use Bluetooth. Allow it in the system settings.");
    case BluetoothCentral::State::PoweredOff:
        return localized("Bluetooth is off. Turn it on to find your Corvane.");
    case BluetoothCentral::State::Unknown:
    case BluetoothCentral::State::Resetting:
    case BluetoothCentral::State::PoweredOn:
        break;
    }
    return {};
}

QString CVBTViewController::titleForHeader(int) const
{
    return localized("Select Corvane Bluetooth device");
}

QString CVBTViewController::footerButtonTitle() const
{
    return localized("Cancel");
}

quintptr CVBTViewController::rowIdentity(IndexPath path) const
{
    const auto device = _context.manager.devices().value(path.row);
    return device ? reinterpret_cast<quintptr>(device.get()) : waitRowIdentity;
}

void CVBTViewController::viewWillAppear()
{
    _context.manager.clearDevices();
    reloadData();
}

void CVBTViewController::viewDidAppear()
{
    _context.manager.setDelegate(std::static_pointer_cast<CVBTViewController>(shared_from_this()));
    _context.manager.startDeviceScan();
    _isScanning = true;
    watchForSilence();
    // What keeps the radio from searching is in the row that takes the focus.
    reloadData();
}

void CVBTViewController::viewDidDisappear()
{
    _silence.cancel();
    if (_isScanning && !_isAnswered)
        _context.manager.stopDeviceScan();
}

void CVBTViewController::newDeviceFound(const CVBTPeripheralPtr &device)
{
    _context.log.info(QStringLiteral("-(void)newDeviceFound:(CBPeripheral *)peripheral"));
    if (_isAnswered)
        return;
    const int row = static_cast<int>(_context.manager.devices().size()) - 1;
    insertRow({0, row}, RowAnimation::Automatic);
    setHint(nullptr);
    presenter().announce(localizedFormat("Found %@", shownName(*device)));
}

void CVBTViewController::bluetoothStateChanged()
{
    if (_isAnswered || !_isScanning)
        return;
    // A scan does not outlive the radio.
    if (_context.manager.centralManager().state() == BluetoothCentral::State::PoweredOn)
        _context.manager.internalStartScan();
    setHint(nullptr);
    watchForSilence();
    tellRadioProblem();
}

void CVBTViewController::tellRadioProblem()
{
    const QString problem = radioProblem();
    if (!problem.isEmpty())
        presenter().announce(problem);
}

void CVBTViewController::watchForSilence()
{
    _silence.start(silenceTime, [this] { tellSilence(); });
}

// Goes on until a device is found: one that was not seen may be seen and say nothing.
void CVBTViewController::tellSilence()
{
    if (!_context.manager.devices().isEmpty())
        return;
    watchForSilence();
    const char *found = _context.manager.hasSilentDevice()
                            ? "A Corvane is near but does not answer. Switch it off and on, and keep it near."
                            : "No Corvane seen. Is it on, charged and near? Is another phone or computer "
                              "connected to it?";
    if (!radioProblem().isEmpty() || _hint == found)
        return;
    setHint(found);
    presenter().announce(localized(_hint));
}

void CVBTViewController::setHint(const char *hint)
{
    _hint = hint;
    reloadRow({0, numberOfRows(0) - 1});
}

void CVBTViewController::didSelectRow(IndexPath path)
{
    const auto device = _context.manager.devices().value(path.row);
    if (!device || _isAnswered)
        return;
    _context.manager.stopDeviceScan();
    _isScanning = false;
    _context.manager.setDelegate({});
    answer(device);
}

void CVBTViewController::footerButtonActivated()
{
    cancelButtonClicked();
}

void CVBTViewController::cancelButtonClicked()
{
    if (_isAnswered)
        return;
    _context.manager.stopDeviceScan();
    answer(nullptr);
}

void CVBTViewController::answer(const CVBTPeripheralPtr &device)
{
    _isAnswered = true;
    _silence.cancel();
    if (const auto delegate = _delegate.lock())
        delegate->didSelectBTDevice(device);
}

} // namespace cvtamber
