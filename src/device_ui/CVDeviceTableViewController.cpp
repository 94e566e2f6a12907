// SPDX-License-Identifier: GPL-3.0-or-later
#include "device_ui/CVDeviceTableViewController.h"

#include "app/AppContext.h"
#include "base/SystemLog.h"
#include "chat/Chat2ViewController.h"
#include "chat/ChatViewController.h"
#include "device/CVBTDevice.h"
#include "device/Reconnector.h"
#include "device_ui/CVTransferViewController.h"
#include "device_ui/MCVFilesViewController.h"
#include "text/DeviceTables.h"
#include "ui/NavigationController.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

namespace {

// The language whose braille always has the UEB contractions.
constexpr int australian = 1;

QString localizedName(const QString &key)
{
    return localized(key.toLatin1().constData());
}

TableCell tableCellWithLabel(const QString &label, const QString &detail)
{
    TableCell cell;
    cell.style = TableCell::Style::Value2;
    cell.text = label;
    cell.detail = detail;
    cell.canHighlight = false;
    return cell;
}

CellControl button(int id, const QString &title, const QString &accessibleName)
{
    CellControl control;
    control.id = id;
    control.kind = CellControl::Kind::Button;
    control.title = title;
    control.accessibleName = accessibleName;
    return control;
}

TableCell buttonCell(int id, const QString &title)
{
    TableCell cell;
    cell.canHighlight = false;
    cell.controls.append(button(id, title, title));
    return cell;
}

} // namespace

CVDeviceTableViewController::CVDeviceTableViewController(AppContext &context)
    : TableViewController(context.presenter)
    , _context(context)
    , _isBluetoothSupported(context.manager.isBluetoothSupported())
{
    setDetailHint(localized("The chat and the whiteboard open here."));
    _context.device.addLinkObserver(*this);
}

CVDeviceTableViewController::~CVDeviceTableViewController()
{
    _context.device.removeLinkObserver(*this);
}

std::shared_ptr<CVDeviceTableViewController> CVDeviceTableViewController::self()
{
    return std::static_pointer_cast<CVDeviceTableViewController>(shared_from_this());
}

// While the connect dialog is up the table keeps the layout of a device that is not connected.
std::vector<CVDeviceTableViewController::Section> CVDeviceTableViewController::layout() const
{
    if (!_hasChatSection && !_isBluetoothSupported)
        return {{Row::NotSupported}, {Row::Version}};
    std::vector<Section> sections{{Row::State, Row::Files, Row::Language, Row::UEB, Row::BrailleTable,
                                   Row::Mode, Row::Firmware, Row::Model, Row::SerialNumber},
                                  {Row::Version}};
    if (_hasChatSection)
        sections.insert(sections.begin(), {Row::Whiteboard, Row::Chat});
    return sections;
}

int CVDeviceTableViewController::numberOfSections() const
{
    return static_cast<int>(layout().size());
}

int CVDeviceTableViewController::numberOfRows(int section) const
{
    return static_cast<int>(layout().at(static_cast<size_t>(section)).size());
}

CVDeviceTableViewController::Row CVDeviceTableViewController::rowAt(IndexPath path) const
{
    return layout().at(static_cast<size_t>(path.section)).at(static_cast<size_t>(path.row));
}

quintptr CVDeviceTableViewController::rowIdentity(IndexPath path) const
{
    return static_cast<quintptr>(rowAt(path));
}

TableCell CVDeviceTableViewController::cellForRow(IndexPath path) const
{
    switch (rowAt(path)) {
    case Row::State:
        return stateCell();
    case Row::Files:
        return filesCell();
    case Row::Language:
        return tableCellWithLabel(localized("Language:"), _details.language);
    case Row::UEB:
        return uebcCell();
    case Row::BrailleTable:
        return tableCellWithLabel(localized("Braille table:"), _details.brailleTable);
    case Row::Mode:
        return tableCellWithLabel(localized("Mode:"), _details.mode);
    case Row::Firmware:
        return tableCellWithLabel(localized("Firmware:"), _details.firmware);
    case Row::Model:
        return tableCellWithLabel(localized("Model:"), _details.model);
    case Row::SerialNumber:
        return tableCellWithLabel(localized("Serial No.:"), _details.serialNumber);
    case Row::Version:
        return tableCellWithLabel(localized("CVTamber version::"), QStringLiteral(CVTAMBER_VERSION));
    case Row::Whiteboard:
        return liveTextCell(WhiteboardButton);
    case Row::Chat:
        return liveTextCell(ChatButton);
    case Row::NotSupported:
        break;
    }
    TableCell cell;
    cell.text = localized("Bluetooth LE is not supported on this device");
    cell.canHighlight = false;
    return cell;
}

TableCell CVDeviceTableViewController::stateCell() const
{
    if (_details.isAway) {
        TableCell cell = tableCellWithLabel(localized("State:"), localized("Connecting again"));
        cell.controls.append(
            button(ConnectButton, localized("Cancel"), localized("Do not connect to the Corvane again")));
        return cell;
    }
    TableCell cell = tableCellWithLabel(
        localized("State:"), _details.isConnected ? localized("Connected") : localized("Disconnected"));
    cell.detailTone = _details.isConnected ? TableCell::Tone::Success : TableCell::Tone::Normal;
    cell.controls.append(
        _details.isConnected
            ? button(ConnectButton, localized("Disconnect..."), localized("Disconnect from Corvane"))
            : button(ConnectButton, localized("Connect..."), localized("Connect to Corvane")));
    return cell;
}

TableCell CVDeviceTableViewController::filesCell() const
{
    TableCell cell = tableCellWithLabel(localized("Files:"), _details.files);
    if (!_details.isConnected)
        return cell;
    if (_isShowFilesVisible) {
        CellControl show = button(ShowFilesButton, localized("Show..."), localized("Show files"));
        show.isEnabled = !_isRefreshing;
        cell.controls.append(show);
    }
    if (_isRefreshing) {
        CellControl indicator;
        indicator.id = FilesActivityIndicator;
        indicator.kind = CellControl::Kind::ActivityIndicator;
        indicator.accessibleName = localized("Reading the list of files");
        cell.controls.append(indicator);
    } else {
        cell.controls.append(button(RefreshFilesButton, localized("Refresh"), localized("Refresh files")));
    }
    return cell;
}

TableCell CVDeviceTableViewController::uebcCell() const
{
    TableCell cell = tableCellWithLabel(localized("UEB:"), {});
    if (!_details.isConnected)
        return cell;
    CellControl control;
    control.id = SwitchUEBC;
    control.kind = CellControl::Kind::Switch;
    control.accessibleName = localized("UEB contractions");
    control.isOn = _uebcOn || _details.isUEBForced;
    control.isEnabled = !_details.isUEBForced;
    cell.controls.append(control);
    return cell;
}

void CVDeviceTableViewController::viewWillAppear()
{
    _isBluetoothSupported = _context.manager.isBluetoothSupported();
    updateStateLabels();
}

void CVDeviceTableViewController::updateStateLabels()
{
    const CVBTDevice &device = _context.device;
    _details = device.turn().isLinked() ? connectedDetails() : Details();
    _details.isAway = !_details.isConnected && _context.reconnector.isAway();
    if (!_details.isConnected)
        _isShowFilesVisible = false;
    else if (device.getFilesCount() >= 1)
        _isShowFilesVisible = true;
    showChatSection(_details.isConnected && _connectWindowsClosed);
    reloadData();
}

void CVDeviceTableViewController::showChatSection(bool shows)
{
    if (std::exchange(_hasChatSection, shows) == shows || !_isBluetoothSupported)
        return;
    if (shows)
        insertSection(0, RowAnimation::Fade);
    else
        deleteSection(0, RowAnimation::Top);
}

CVDeviceTableViewController::Details CVDeviceTableViewController::connectedDetails() const
{
    const CVBTDevice &device = _context.device;
    Details details;
    details.isConnected = true;
    details.isUEBForced = device.cvLanguage() == australian;
    details.firmware = device.cvFirmwareVersion();
    details.model = modelName(device.cvModel());
    details.language = localizedName(languageName(device.cvLanguage()));
    const bool isAdvanced = device.cvDeviceStateData()[DeviceStateRecord::AdvancedMode] != 0;
    details.mode = isAdvanced ? localized("Advanced") : localized("Learn");
    const int filesCount = device.getFilesCount();
    details.files = filesCount < 0 ? QString() : QString::number(filesCount);
    details.serialNumber = device.cvSerialNumber();
    details.brailleTable = localizedName(brailleCodeName(device.cvBrailleCode()));
    return details;
}

// While the connect dialog is up nothing is told here; its end fills the labels.
void CVDeviceTableViewController::linkStateChanged(int)
{
    if (_connectWindowsClosed)
        updateStateLabels();
}

void CVDeviceTableViewController::linkConnected()
{
    _isLinkIdentified = true;
    if (std::exchange(_isAway, false))
        presenter().showNotice(localized("The Corvane is connected again."));
    linkStateChanged(CVDeviceStateDelegate::ConnectedAndIdentified);
}

void CVDeviceTableViewController::linkLost(const QString &)
{
    _isAway = _context.reconnector.isAway();
    if (std::exchange(_isLinkIdentified, false) && _connectWindowsClosed)
        tellLoss();
    // A link that ended without an error leaves the device object connected to nothing.
    if (!_isAway && _context.device.isConnectedAsCVComm())
        _context.device.disconnectAsCVComm();
    updateStateLabels();
}

// A transfer says what has become of it.
void CVDeviceTableViewController::tellLoss() const
{
    const auto transfer =
        std::dynamic_pointer_cast<CVTransferViewController>(_context.device.cvUploadDelegate());
    const bool isTold = transfer && transfer->tellsLoss();
    if (_isAway)
        presenter().showNotice(
            isTold ? localized("Trying to connect again.")
                   : localized("The connection to the Corvane was lost. Trying to connect again."));
    else if (!isTold)
        presenter().showNotice(localized("The connection to the Corvane was lost."));
}

void CVDeviceTableViewController::linkClosed()
{
    _isLinkIdentified = false;
    updateStateLabels();
}

void CVDeviceTableViewController::controlActivated(IndexPath path, int control, bool on)
{
    switch (control) {
    case ConnectButton:
        connectButtonClicked();
        break;
    case SwitchUEBC:
        afterLiveText([this, on, path] {
            switchUEBCClicked(on);
            reloadRow(path);
        });
        break;
    case RefreshFilesButton:
        afterLiveText([this] { refreshFilesButtonClicked(); });
        break;
    case ShowFilesButton:
        afterLiveText([this] { showFilesClicked(); });
        break;
    case WhiteboardButton:
    case ChatButton:
        chatClicked(control);
        break;
    default:
        break;
    }
}

// In live text the device would take for text what it is asked.
void CVDeviceTableViewController::afterLiveText(const std::function<void()> &action)
{
    const auto navigation = navigationController();
    if (!navigation || !navigation->detail()) {
        action();
        return;
    }
    navigation->popToRootViewController(false);
    presenter().transitions().add([weak = weak_from_this(), action](const TransitionQueue::Done &done) {
        if (const auto screen = weak.lock(); screen && screen->takesActions())
            action();
        done();
    });
}

void CVDeviceTableViewController::connectButtonClicked()
{
    _context.log.info(QStringLiteral("-(void)connectButtonClicked"));
    if (_context.device.turn().isLinked() || _context.reconnector.isAway()) {
        disconnect();
        return;
    }
    if (presentedViewController())
        return;
    _connectViewController = std::make_shared<CVConnectViewController>(_context);
    _connectViewController->setDelegate(self());
    _connectViewController->setModalPresentationStyle(PresentationStyle::FormSheet);
    _connectViewController->setModalTransitionStyle(TransitionStyle::FlipHorizontal);
    presentViewController(_connectViewController, true);
    _connectWindowsClosed = presentedViewController() != _connectViewController;
}

void CVDeviceTableViewController::disconnect()
{
    _isLinkIdentified = false;
    _isAway = false;
    _context.reconnector.stop();
    _context.device.disconnectAsCVComm();
    presenter().announce(localized("Disconnected"));
    updateStateLabels();
}

void CVDeviceTableViewController::connectViewControllerDidClickedWithButton(CVConnectViewController &dialog,
                                                                            int)
{
    if (&dialog != _connectViewController.get())
        return;
    dismissViewController(true, [weak = std::weak_ptr(self())] {
        if (const auto screen = weak.lock())
            screen->connectDialogClosed();
    });
}

void CVDeviceTableViewController::connectDialogClosed()
{
    _connectWindowsClosed = true;
    _connectViewController.reset();
    updateStateLabels();
}

void CVDeviceTableViewController::switchUEBCClicked(bool on)
{
    if (on && !_uebcOn) {
        _context.log.debug(QStringLiteral("UEBC ON"));
        _uebcOn = true;
        _context.device.sendCommand(QStringLiteral("DFLN OZ"));
    } else if (!on && _uebcOn) {
        _uebcOn = false;
        _context.device.sendCommand(QStringLiteral("DFLN USA"));
        _context.log.debug(QStringLiteral("UEBC OFF"));
    }
}

void CVDeviceTableViewController::refreshFilesButtonClicked()
{
    _isRefreshing = true;
    reloadData();
    _context.device.turn().list([weak = std::weak_ptr(self())](DeviceTurn::End end) {
        if (const auto screen = weak.lock())
            screen->filesRefreshed(end);
    });
}

void CVDeviceTableViewController::filesRefreshed(DeviceTurn::End end)
{
    _isRefreshing = false;
    updateStateLabels();
    if (!_details.isConnected)
        return;
    if (end != DeviceTurn::End::Done) {
        presenter().showNotice(localized("The Corvane does not answer. Its files are not known."));
        return;
    }
    _isShowFilesVisible = _context.device.getFilesCount() != 0;
    reloadData();
    presenter().announce(localizedFormat("Files on the Corvane: %@", _details.files));
}

void CVDeviceTableViewController::showFilesClicked()
{
    _context.log.info(QStringLiteral("-(void)showFilesClicked"));
    if (presentedViewController())
        return;
    const auto files = std::make_shared<MCVFilesViewController>(_context);
    // Loading gives it a title of its own.
    files->loadViewIfNeeded();
    files->setTitle(localized("Corvane files"));
    BarButtonItem done;
    done.kind = BarButtonItem::Kind::Done;
    done.title = localized("Done");
    done.action = [weak = std::weak_ptr(self())] {
        if (const auto screen = weak.lock())
            screen->cancelFileDialog();
    };
    files->setLeftItems({done});
    const auto navigation = NavigationController::withRoot(presenter(), files);
    navigation->setModalPresentationStyle(PresentationStyle::FormSheet);
    presentViewController(navigation, true);
}

// Null while something else or nothing is open.
std::shared_ptr<ViewController> CVDeviceTableViewController::openLiveText(int button) const
{
    const auto navigation = navigationController();
    const auto shown = navigation ? navigation->detail() : nullptr;
    const bool isIt = button == WhiteboardButton
                          ? std::dynamic_pointer_cast<ChatViewController>(shown) != nullptr
                          : std::dynamic_pointer_cast<Chat2ViewController>(shown) != nullptr;
    return isIt ? shown : nullptr;
}

TableCell CVDeviceTableViewController::liveTextCell(int button) const
{
    TableCell cell = buttonCell(button, localized(button == WhiteboardButton ? "Whiteboard" : "Chat"));
    const auto navigation = navigationController();
    cell.isOpen = navigation && navigation->hasColumns() && openLiveText(button);
    return cell;
}

void CVDeviceTableViewController::chatClicked(int button)
{
    _context.log.info(QStringLiteral("Chat clicked"));
    const auto navigation = navigationController();
    if (!navigation)
        return;
    // Beside this screen it can be chosen again: a conversation goes on.
    std::shared_ptr<ViewController> screen = openLiveText(button);
    if (screen) {
        navigation->showDetail(screen);
        return;
    }
    if (button == WhiteboardButton) {
        screen = std::make_shared<ChatViewController>(_context);
        screen->setTitle(localized("Whiteboard"));
    } else {
        screen = std::make_shared<Chat2ViewController>(_context);
        screen->setTitle(localized("Chat"));
    }
    navigation->showDetail(screen);
}

// Where the list did not cover this screen no appearance fills the labels again.
void CVDeviceTableViewController::cancelFileDialog()
{
    dismissViewController(true, [weak = std::weak_ptr(self())] {
        if (const auto screen = weak.lock())
            screen->updateStateLabels();
    });
}

} // namespace cvtamber
