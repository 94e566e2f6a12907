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
    if (problem.isEmpty())
        cell.text = localized("Looking for devices. Switch the Corvane on and keep it near.");
    else
        cell.text = problem;
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
    _silence.start(silenceTime, [this] { tellSilentDevice(); });
    reloadData();
    tellRadioProblem();
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
    reloadRow({0, row + 1});
    presenter().announce(localizedFormat("Found %@", shownName(*device)));
}

void CVBTViewController::bluetoothStateChanged()
{
    if (_isAnswered || !_isScanning)
        return;
    // A scan does not outlive the radio.
    if (_context.manager.centralManager().state() == BluetoothCentral::State::PoweredOn)
        _context.manager.internalStartScan();
    reloadRow({0, numberOfRows(0) - 1});
    tellRadioProblem();
}

void CVBTViewController::tellRadioProblem()
{
    const QString problem = radioProblem();
    if (!problem.isEmpty())
        presenter().announce(problem);
}

void CVBTViewController::tellSilentDevice()
{
    if (!_context.manager.devices().isEmpty())
        return;
    if (_context.manager.hasSilentDevice() && radioProblem().isEmpty())
        presenter().showNotice(
            localized("A Corvane is near but does not answer. Switch it off and on, and keep it near."));
    else
        _silence.start(silenceTime, [this] { tellSilentDevice(); });
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
