// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TamberContainerViewController.h"

#include "app/AppContext.h"
#include "app/ContainerDeviceActions.h"
#include "app/ContainerEditing.h"
#include "app/ContainerFileActions.h"
#include "app/ContainerMenus.h"
#include "app/ContainerMoving.h"
#include "app/ContainerScreen.h"
#include "app/UserTexts.h"
#include "base/SystemLog.h"
#include "base/VisibleText.h"
#include "store/CloudNames.h"
#include "store/StoreContext.h"
#include "store/StoreDisk.h"
#include "ui/NavigationController.h"
#include "ui/TableModel.h"
#include "ui/Texts.h"

#include <QDateTime>

namespace cvtamber {

using namespace Qt::StringLiterals;

TamberContainerViewController::TamberContainerViewController(AppContext &context)
    : TableViewController(context.presenter)
    , _context(context)
    , _screen(std::make_unique<ContainerScreen>(context, *this))
    , _fileActions(std::make_unique<ContainerFileActions>(*_screen))
    , _deviceActions(std::make_unique<ContainerDeviceActions>(*_screen))
    , _editing(std::make_unique<ContainerEditing>(*_screen))
    , _moving(std::make_unique<ContainerMoving>(*_screen))
{}

TamberContainerViewController::~TamberContainerViewController()
{
    if (const auto &user = contents().user())
        user->removeObserver(*this);
    else if (const auto &folder = contents().folder())
        folder->removeObserver(*this);
}

void TamberContainerViewController::setDelegate(
    const std::shared_ptr<TamberContainerViewControllerDelegate> &delegate)
{
    _delegate = delegate;
}

const ContainerContents &TamberContainerViewController::contents() const
{
    return _screen->contents();
}

int TamberContainerViewController::sectionsCount() const
{
    return contents().sectionsCount();
}

int TamberContainerViewController::afterConnectionAction() const
{
    return _deviceActions->afterConnectionAction();
}

void TamberContainerViewController::handleAddDummyFileCommand()
{
    const QString date = QDateTime::currentDateTimeUtc().toString(u"yyyy-MM-dd HH:mm:ss '+0000'"_s);
    if (const auto &container = contents().filesContainer())
        container->addFileWithName(date, date);
}

// Life

void TamberContainerViewController::viewDidLoad()
{
    _screen->contents().show(container());
    if (const auto &user = contents().user())
        user->addObserver(*this);
    else if (const auto &folder = contents().folder())
        folder->addObserver(*this);
    setTitle(contents().title());
    addBarButtons();
}

void TamberContainerViewController::addBarButtons()
{
    const BarButtonItem add{BarButtonItem::Kind::Add, localized("Add"), true, [this] { addButtonClicked(); }};
    if (isPicking()) {
        setLeftItems({{BarButtonItem::Kind::Cancel, localized("Cancel"), true, [this] { cancelClicked(); }}});
        setRightItems({add});
        return;
    }
    BarButtonItem edit = editButtonItem();
    edit.isEnabled = false;
    setRightItems({add, edit});
}

void TamberContainerViewController::viewWillAppear()
{
    showAsItIs();
}

void TamberContainerViewController::showAsItIs()
{
    if (const auto &container = contents().filesContainer())
        container->refresh();
    reloadData();
}

void TamberContainerViewController::viewDidAppear()
{
    updateEditButtonState();
    if (const auto &container = contents().filesContainer())
        container->startQuery();
}

void TamberContainerViewController::viewWillDisappear()
{
    if (const auto &container = contents().filesContainer())
        container->stopQuery();
}

// Table

int TamberContainerViewController::numberOfRows(int section) const
{
    return isActionRow(section) ? 1 : contents().count(section);
}

QString TamberContainerViewController::titleForHeader(int section) const
{
    return localized(contents().isFolderSection(section) ? "Folders" : "Files");
}

bool TamberContainerViewController::isActionRow(int section) const
{
    return isPicking() && contents().isUserLevel() && section == contents().filesSection();
}

TableCell TamberContainerViewController::cellForRow(IndexPath path) const
{
    TableCell cell;
    if (isActionRow(path.section)) {
        cell.style = TableCell::Style::Action;
        cell.canHighlight = false;
        CellControl button;
        button.title = _actionButtonTitle;
        button.accessibleName = _actionButtonTitle;
        cell.controls.append(button);
        return cell;
    }
    const ContainerItem item = contents().itemAt(path);
    cell.style = TableCell::Style::Value1;
    cell.text = item.title();
    if (item.isFolder()) {
        if (isBlank(cell.text))
            cell.text = localized("Folder without a name");
        if (contents().isNameShared(*item.folder))
            cell.accessibleName =
                spokenApart(cell.text, {}, static_cast<qsizetype>(item.folder->files().size()));
        cell.image = u"folder.png"_s;
        cell.accessory = isPicking() ? TableCell::Accessory::None : TableCell::Accessory::Disclosure;
    } else if (item.document) {
        cell.image = u"doc.png"_s;
        const QString other = titleBehindConflictCopy(cell.text);
        cell.detail =
            other.isNull() ? sizeText(*item.document) : localizedFormat("Other version of %@", other);
    }
    return cell;
}

// Without the size, which costs a look at the disk.
QString TamberContainerViewController::searchText(IndexPath path) const
{
    return isActionRow(path.section) ? QString() : QString(contents().itemAt(path).title() % u'\n');
}

QString TamberContainerViewController::sizeText(const TamberDocument &document) const
{
    const FileStatus status = _context.store.disk.status(document.fileURL());
    if (status.kind != FileStatus::Kind::File)
        return {};
    return QString::number(status.stamp.size) % u" B"_s;
}

quintptr TamberContainerViewController::rowIdentity(IndexPath path) const
{
    return isActionRow(path.section) ? 0 : reinterpret_cast<quintptr>(contents().itemAt(path).address());
}

TableViewController::EditingStyle TamberContainerViewController::editingStyle(IndexPath) const
{
    return isPicking() ? EditingStyle::None : EditingStyle::Delete;
}

QString TamberContainerViewController::emptyText() const
{
    return localized(contents().isUserLevel()
                         ? "Nothing here yet. Add a folder, or fetch a file from the Corvane."
                         : "Nothing here yet. Fetch a file from the Corvane.");
}

void TamberContainerViewController::updateEditButtonState()
{
    const int count = contents().foldersCount() + (isPicking() ? 0 : contents().filesCount());
    setItemEnabled(BarButtonItem::Kind::Edit, count != 0 || isEditing());
}

void TamberContainerViewController::setEditing(bool editing)
{
    TableViewController::setEditing(editing);
    updateEditButtonState();
}

// Changes of the container

void TamberContainerViewController::fileAddedAtIndex(StoreIndex index)
{
    const int section = contents().filesSection();
    if (!isActionRow(section))
        rowInserted({section, static_cast<int>(index)});
}

void TamberContainerViewController::fileUpdatedAtIndex(StoreIndex index)
{
    const int section = contents().filesSection();
    if (!isActionRow(section) && rowsInAll() == model().rowCount())
        reloadRow({section, static_cast<int>(index)});
}

void TamberContainerViewController::fileDeletedAtIndex(StoreIndex index)
{
    const int section = contents().filesSection();
    if (!isActionRow(section))
        rowDeleted({section, static_cast<int>(index)});
}

void TamberContainerViewController::folderAddedAtIndex(StoreIndex index)
{
    const auto &user = contents().user();
    if (const auto folder = user ? user->folderAtIndex(index) : nullptr)
        folder->setUser(user);
    rowInserted({0, static_cast<int>(index)});
    reloadTwins(index);
}

void TamberContainerViewController::folderDeletedAtIndex(StoreIndex index)
{
    rowDeleted({0, static_cast<int>(index)});
}

void TamberContainerViewController::folderUpdatedAtIndex(StoreIndex index)
{
    reloadRow({0, static_cast<int>(index)});
    reloadTwins(index);
}

void TamberContainerViewController::reloadTwins(StoreIndex index)
{
    const auto folder = contents().itemAt({0, static_cast<int>(index)}).folder;
    if (folder && contents().isNameShared(*folder))
        reloadData();
}

int TamberContainerViewController::rowsInAll() const
{
    int rows = 0;
    for (int section = 0; section < sectionsCount(); ++section)
        rows += numberOfRows(section);
    return rows;
}

void TamberContainerViewController::rowInserted(IndexPath path)
{
    // Folders come without a word while a user is being read.
    if (rowsInAll() == model().rowCount() + 1)
        insertRow(path);
    else
        reloadData();
    updateEditButtonState();
}

void TamberContainerViewController::rowDeleted(IndexPath path)
{
    if (rowsInAll() == model().rowCount() - 1)
        deleteRow(path);
    else
        reloadData();
    updateEditButtonState();
}

// What a person does

void TamberContainerViewController::didSelectRow(IndexPath path)
{
    const ContainerItem item = contents().itemAt(path);
    if (item.isEmpty())
        return;
    if (isEditing() && !isPicking())
        askForEditAction(item);
    else if (item.isFolder())
        folderSelected(item.folder);
    else if (!isPicking())
        fileSelected(item);
}

void TamberContainerViewController::folderSelected(const std::shared_ptr<TamberDataFolder> &folder)
{
    if (isPicking()) {
        if (const auto delegate = _delegate)
            delegate->tamberContainerViewControllerFolderPicked(*this, folder);
        return;
    }
    const auto browser = std::make_shared<TamberContainerViewController>(_context);
    browser->setContainer(folder);
    if (const auto navigation = navigationController())
        navigation->pushViewController(browser, true);
}

void TamberContainerViewController::controlActivated(IndexPath path, int, bool)
{
    const auto delegate = _delegate;
    if (delegate && isActionRow(path.section))
        delegate->tamberContainerViewControllerUserPicked(*this, contents().user());
}

void TamberContainerViewController::cancelClicked()
{
    if (const auto delegate = _delegate)
        delegate->tamberContainerViewControllerFolderPicked(*this, nullptr);
}

void TamberContainerViewController::commitDelete(IndexPath path)
{
    _editing->handleDeleteFileCommand(contents().itemAt(path));
}

void TamberContainerViewController::commitRename(IndexPath path)
{
    const ContainerItem item = contents().itemAt(path);
    if (!isPicking() && !item.isEmpty())
        _editing->askForNewName(item);
}

bool TamberContainerViewController::canAddFolder() const
{
    return !isPicking() && contents().isUserLevel();
}

void TamberContainerViewController::addFolder()
{
    perform([this] {
        if (canAddFolder())
            _editing->handleAddFolderCommand();
    });
}

void TamberContainerViewController::addButtonClicked()
{
    if (isPicking()) {
        _editing->handleAddFolderCommand();
        return;
    }
    const auto menu = addMenu(contents().isUserLevel());
    ActionSheet sheet = menuSheet(AddMenuTag, localized("4.3"), menu);
    sheet.anchor.kind = Anchor::Kind::RightBarButton;
    sheet.didDismiss = [this, menu](const ActionSheet &, int buttonIndex) {
        _context.log.info(u"buttonIndex == "_s % QString::number(buttonIndex));
        const auto command = commandAt(menu, buttonIndex);
        if (command == AddCommand::NewFolder)
            _editing->handleAddFolderCommand();
        else if (command == AddCommand::FetchFile)
            _deviceActions->handleAddCVFileCommand();
    };
    _screen->ask(sheet);
}

void TamberContainerViewController::fileSelected(const ContainerItem &item)
{
    const QString other = titleBehindConflictCopy(item.title());
    const auto menu = other.isNull() ? fileMenu() : conflictCopyMenu();
    ActionSheet sheet = menuSheet(
        FileMenuTag, other.isNull() ? item.title() : localizedFormat("Other version of %@", other), menu);
    sheet.anchor = _screen->anchorOf(item);
    sheet.didDismiss = [this, item, menu](const ActionSheet &, int buttonIndex) {
        if (const auto command = commandAt(menu, buttonIndex))
            runFileCommand(*command, item);
    };
    _screen->ask(sheet);
}

void TamberContainerViewController::runFileCommand(FileCommand command, const ContainerItem &item)
{
    switch (command) {
    case FileCommand::Preview:
        _fileActions->preview(item.document);
        break;
    case FileCommand::Send:
        _deviceActions->send(item.document);
        break;
    case FileCommand::Move:
        _moving->move(item);
        break;
    case FileCommand::Mail:
        _fileActions->mail(item.document);
        break;
    case FileCommand::Emboss:
        _deviceActions->emboss(item.document);
        break;
    case FileCommand::KeepThis:
        _editing->keepThisVersion(item);
        break;
    case FileCommand::KeepOther:
        _editing->keepOtherVersion(item);
        break;
    case FileCommand::KeepBoth:
        _editing->keepBothVersions(item);
        break;
    }
}

void TamberContainerViewController::askForEditAction(const ContainerItem &item)
{
    ActionSheet sheet = menuSheet(EditMenuTag, localized("4.3"), editMenu());
    sheet.destructiveButtonIndex = 0;
    sheet.anchor = _screen->anchorOf(item);
    sheet.didDismiss = [this, item](const ActionSheet &, int buttonIndex) {
        const auto command = commandAt(editMenu(), buttonIndex);
        if (command == EditCommand::Delete)
            _editing->handleDeleteFileCommand(item);
        else if (command == EditCommand::Move)
            _moving->move(item);
        else if (command == EditCommand::Rename)
            _editing->askForNewName(item);
    };
    _screen->ask(sheet);
}

} // namespace cvtamber
