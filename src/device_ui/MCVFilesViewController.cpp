// SPDX-License-Identifier: GPL-3.0-or-later
#include "device_ui/MCVFilesViewController.h"

#include "app/AppContext.h"
#include "app/MGlobals.h"
#include "base/SystemLog.h"
#include "base/VisibleText.h"
#include "device/CVBTDevice.h"
#include "store/StoreContext.h"
#include "store/StoreDisk.h"
#include "store/StoreNames.h"
#include "store/TamberDataFolder.h"
#include "store/TamberUser.h"
#include "text/DeviceNames.h"
#include "ui/Texts.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

// The file menu and the confirmation; Cancel comes last in both.
constexpr int DeleteButton = 0;

// The row that stands for the list while it is asked for anew; names have even identities.
constexpr quintptr waitIdentity = 1;

} // namespace

MCVFilesViewController::MCVFilesViewController(AppContext &context)
    : TableViewController(context.presenter)
    , _context(context)
{
    _context.device.addLinkObserver(*this);
}

MCVFilesViewController::~MCVFilesViewController()
{
    _context.device.removeLinkObserver(*this);
}

std::shared_ptr<MCVFilesViewController> MCVFilesViewController::self()
{
    return std::static_pointer_cast<MCVFilesViewController>(shared_from_this());
}

void MCVFilesViewController::viewDidLoad()
{
    setTitle(localized("Files"));
    addBarButtons();
}

void MCVFilesViewController::addBarButtons()
{
    using Kind = BarButtonItem::Kind;
    setRightItems({{Kind::Refresh, localized("Refresh"), true, [this] { refreshClicked(); }}});
    if (_mode == Mode::PickFile)
        setLeftItems({{Kind::Cancel, localized("Cancel"), true, [this] { cancelClicked(); }}});
}

void MCVFilesViewController::viewWillAppear()
{
    // The list that another screen has asked for is still to take the place of this one.
    if (!_isRefreshing && _context.device.turn().isListing())
        refresh();
    reloadData();
}

// The rows

int MCVFilesViewController::numberOfRows(int) const
{
    return _isRefreshing ? 1 : std::max(0, _context.device.getFilesCount());
}

TableCell MCVFilesViewController::cellForRow(IndexPath path) const
{
    TableCell cell;
    if (_isRefreshing) {
        cell.style = TableCell::Style::Wait;
        cell.text = localized("Please wait…");
        cell.canHighlight = false;
        return cell;
    }
    cell.style = TableCell::Style::Subtitle;
    cell.text = visibleText(_context.device.getFileName(path.row));
    cell.detail = QString::number(_context.device.getFileSize(path.row)) + QStringLiteral(" B");
    cell.image = QStringLiteral("doc.png");
    return cell;
}

quintptr MCVFilesViewController::rowIdentity(IndexPath path) const
{
    if (_isRefreshing)
        return waitIdentity;
    const quintptr identity = qHash(_context.device.getFileName(path.row)) & ~quintptr{1};
    return identity == 0 ? 2 : identity;
}

QString MCVFilesViewController::emptyText() const
{
    if (numberOfRows(0) > 0)
        return {};
    return _context.device.turn().isLinked()
               ? localized("There are no files on the Corvane. Write one on it, then choose Refresh.")
               : localized("The Corvane is not connected.");
}

int MCVFilesViewController::rowOf(const QString &fileName) const
{
    for (int row = 0; row < _context.device.getFilesCount(); ++row) {
        if (_context.device.getFileName(row) == fileName)
            return row;
    }
    return -1;
}

// Refreshing

void MCVFilesViewController::refreshClicked()
{
    if (_isRefreshing)
        return;
    if (!_context.device.turn().isLinked()) {
        presenter().showNotice(localized("The Corvane is not connected."));
        return;
    }
    presenter().announce(localized("Please wait…"));
    refresh();
}

void MCVFilesViewController::refresh()
{
    _isRefreshing = true;
    reloadData();
    _context.device.turn().list([weak = std::weak_ptr(self())](DeviceTurn::End end) {
        if (const auto view = weak.lock())
            view->filesRefreshed(end);
    });
}

// A lost link is told by the device screen.
void MCVFilesViewController::filesRefreshed(DeviceTurn::End end)
{
    _isRefreshing = false;
    reloadData();
    if (end == DeviceTurn::End::Done)
        presenter().announce(localizedFormat("Files on the Corvane: %@", QString::number(numberOfRows(0))));
    else if (_context.device.turn().isLinked())
        presenter().showNotice(localized("The Corvane does not answer. Its files are not known."));
}

void MCVFilesViewController::linkConnected()
{
    reloadData();
}

void MCVFilesViewController::linkLost(const QString &)
{
    reloadData();
}

void MCVFilesViewController::linkClosed()
{
    linkLost({});
}

// Picking

void MCVFilesViewController::didSelectRow(IndexPath path)
{
    if (_mode == Mode::Browse) {
        showFileMenu(path);
        return;
    }
    const QString fileName = _context.device.getFileName(path.row);
    if (!isNameGood(fileName))
        return;
    if (const auto delegate = _delegate.lock())
        delegate->cvFilesViewDidSelectFile(*this, fileName);
}

void MCVFilesViewController::cancelClicked()
{
    if (const auto delegate = _delegate.lock())
        delegate->cvFilesViewDidSelectFile(*this, {});
}

// The menu of a file

void MCVFilesViewController::showFileMenu(IndexPath path)
{
    ActionSheet sheet;
    sheet.tag = FileMenuTag;
    sheet.buttons = {localized("Delete"), localized("5.3"), localized("Cancel")};
    sheet.destructiveButtonIndex = DeleteButton;
    _viewActionButtonIndex = DeleteButton + 1;
    sheet.cancelButtonIndex = static_cast<int>(sheet.buttons.size()) - 1;
    sheet.anchor = {Anchor::Kind::Row, path.section, path.row};
    sheet.didDismiss = [this, path, fileName = _context.device.getFileName(path.row)](
                           const ActionSheet &answered, int button) {
        menuDismissed(answered, button, fileName, path);
    };
    showActionSheet(std::move(sheet));
}

void MCVFilesViewController::menuDismissed(const ActionSheet &sheet, int button, const QString &fileName,
                                           IndexPath path)
{
    _context.log.info(QStringLiteral("{length = 2, path = %1 - %2}").arg(path.section).arg(path.row));
    if (sheet.tag == DeleteConfirmationTag) {
        if (button == DeleteButton)
            deleteFile(fileName);
        return;
    }
    if (button == sheet.cancelButtonIndex || !isWithinReach(fileName))
        return;
    if (button == DeleteButton)
        confirmDelete(fileName);
    else if (button == _viewActionButtonIndex)
        viewFile(fileName);
    else if (button == _downloadActionButtonindex)
        downloadFile(fileName, button);
}

bool MCVFilesViewController::isWithinReach(const QString &fileName) const
{
    if (!_context.device.turn().isLinked())
        presenter().showNotice(localized("The Corvane is not connected."));
    else if (!_context.device.turn().isFree())
        presenter().showNotice(localized("The Corvane is still busy. Try again in half a minute."));
    else if (rowOf(fileName) < 0)
        presenter().showNotice(localizedFormat("%@ is not on the Corvane any more.", visibleText(fileName)));
    else
        return isNameGood(fileName);
    return false;
}

bool MCVFilesViewController::isNameGood(const QString &fileName) const
{
    const QString problem = nameProblem(fileName);
    if (!problem.isEmpty())
        presenter().showNotice(problem);
    return problem.isEmpty();
}

QString MCVFilesViewController::nameProblem(const QString &fileName) const
{
    const CVBTDevice &device = _context.device;
    const auto files = device.files();
    const auto isIt = [&fileName](const CVFileData &file) { return file.name() == fileName; };
    if (std::count_if(files.begin(), files.end(), isIt) > 1)
        return localizedFormat("There is more than one %@ on the Corvane. Delete all but one there.",
                               visibleText(fileName));
    if (nameFault(fileName, device.cvKeyboardLanguage(), device.stringEncoding()) != NameFault::None)
        return localizedFormat("The Corvane cannot be asked for %@ by this name. Rename or delete it there.",
                               visibleText(fileName));
    return {};
}

void MCVFilesViewController::confirmDelete(const QString &fileName)
{
    const IndexPath path{0, rowOf(fileName)};
    ActionSheet sheet;
    sheet.tag = DeleteConfirmationTag;
    sheet.title = localizedFormat("5.4", visibleText(fileName));
    sheet.buttons = {localized("Delete"), localized("Cancel")};
    sheet.destructiveButtonIndex = DeleteButton;
    sheet.cancelButtonIndex = static_cast<int>(sheet.buttons.size()) - 1;
    sheet.anchor = {Anchor::Kind::Row, path.section, path.row};
    sheet.didDismiss = [this, path, fileName](const ActionSheet &answered, int button) {
        menuDismissed(answered, button, fileName, path);
    };
    showActionSheet(std::move(sheet));
}

// The device deletes by name, and the list loses the first row of that name.
void MCVFilesViewController::deleteFile(const QString &fileName)
{
    if (!isWithinReach(fileName))
        return;
    const int row = rowOf(fileName);
    _context.device.deleteFile(fileName);
    deleteRow({0, row}, RowAnimation::Fade);
    presenter().announce(localizedFormat("%@ has been deleted.", visibleText(fileName)));
}

void MCVFilesViewController::viewFile(const QString &fileName)
{
    const auto editor = std::make_shared<MTextEditViewController>(_context);
    editor->setCvFileName(fileName);
    editor->setDelegate(self());
    editor->setShowSaveButton(true);
    const auto navigation = NavigationController::withRoot(presenter(), editor);
    navigation->setModalPresentationStyle(PresentationStyle::FormSheet);
    _textEditViewController = navigation;
    presentViewController(navigation, true);
}

void MCVFilesViewController::editViewCancelled()
{
    dismissIfPresented(_textEditViewController.lock());
}

void MCVFilesViewController::dismissIfPresented(const Controller &controller)
{
    if (controller && presentedViewController() == controller)
        dismissViewController(true);
}

// Fetching into the store

void MCVFilesViewController::downloadFile(const QString &fileName, int buttonIndex)
{
    if (!isNameGood(fileName))
        return;
    _downloadedFileName = fileName;
    const auto user = MGlobals::currentActiveUser();
    if (user && buttonIndex == 1) {
        _userToDownloadTo = user;
        showProgressView();
    } else {
        askForDestination();
    }
}

void MCVFilesViewController::askForDestination()
{
    const auto picker = std::make_shared<TamberPickUserOrFolderViewController>(_context);
    picker->setPickDelegate(self());
    picker->setActionButtonTitle(localized("5.1"));
    picker->setMode(TamberPickUserOrFolderViewController::Mode::PickUserThenFolder);
    picker->setModalPresentationStyle(PresentationStyle::FormSheet);
    presentViewController(picker, true);
}

void MCVFilesViewController::tamberPickUserOrFolderViewControllerFolderPicked(
    TamberPickUserOrFolderViewController &picker, const std::shared_ptr<TamberDataFolder> &folder)
{
    placePicked(picker, nullptr, folder);
}

void MCVFilesViewController::tamberPickUserOrFolderViewControllerUserPicked(
    TamberPickUserOrFolderViewController &picker, const std::shared_ptr<TamberUser> &user)
{
    placePicked(picker, user, nullptr);
}

void MCVFilesViewController::placePicked(const ViewController &picker,
                                         const std::shared_ptr<TamberUser> &user,
                                         const std::shared_ptr<TamberDataFolder> &folder)
{
    if (presentedViewController().get() != &picker)
        return;
    _userToDownloadTo = user;
    _folderToDownloadTo = folder;
    dismissViewController(false, [weak = std::weak_ptr(self())] {
        const auto view = weak.lock();
        if (view && (view->_userToDownloadTo || view->_folderToDownloadTo))
            view->showProgressView();
    });
}

void MCVFilesViewController::showProgressView()
{
    const auto transfer = CVTransferViewController::withCorvaneFileToDownload(_context, _downloadedFileName);
    transfer->setModalTransitionStyle(TransitionStyle::CrossDissolve);
    transfer->setModalPresentationStyle(PresentationStyle::FormSheet);
    transfer->setDelegate(self());
    _transferViewController = transfer;
    presentViewController(transfer, true);
}

void MCVFilesViewController::cvTransferControllerTransferFinished(CVTransferViewController &transfer)
{
    if (_transferViewController.lock().get() != &transfer)
        return;
    const std::shared_ptr<TamberFilesContainer> user = std::exchange(_userToDownloadTo, nullptr);
    const std::shared_ptr<TamberFilesContainer> folder = std::exchange(_folderToDownloadTo, nullptr);
    if (const auto &place = user ? user : folder)
        keepDownload(transfer, *place);
}

void MCVFilesViewController::keepDownload(const CVTransferViewController &transfer,
                                          TamberFilesContainer &place)
{
    place.saveUnderFreeTitle(transfer.nameToKeep(), transfer.downloadedString(),
                             [&presenter = presenter()](const QString &title, const FileResult &result) {
                                 if (result.ok())
                                     presenter.showNotice(localizedFormat("Saved as %@.", title));
                             });
}

void MCVFilesViewController::cvTransferCloseClicked()
{
    _userToDownloadTo.reset();
    _folderToDownloadTo.reset();
    dismissIfPresented(_transferViewController.lock());
}

} // namespace cvtamber
