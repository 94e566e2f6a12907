// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ContainerContents.h"
#include "app/TamberContainerViewControllerDelegate.h"
#include "store/ContainerDelegates.h"
#include "ui/TableViewController.h"

#include <memory>

namespace cvtamber {

struct AppContext;
class ContainerDeviceActions;
class ContainerEditing;
class ContainerFileActions;
class ContainerMoving;
class ContainerScreen;
enum class FileCommand;

// Shows one container of the store: a user (folders, then documents) or one folder (documents).
//
// To browse: opens folders, adds folders and files of the device, and acts on documents; while edited it renames,
// moves and deletes. To pick: the user's folders and one button for the user itself; the delegate hears the choice.
// This class is the table; what the menus do is done by ContainerFileActions, ContainerDeviceActions,
// ContainerEditing and ContainerMoving, which share a ContainerScreen.
// Thread: main thread. Owner: shared, see ViewController.
class TamberContainerViewController final : public TableViewController,
                                            public TamberFilesAndFoldersContainerDelegate
{
    Q_OBJECT

public:
    enum class Mode : int { Browse = 0, PickFolder = 1 };

    // The context outlives the screen.
    explicit TamberContainerViewController(AppContext &context);
    ~TamberContainerViewController() override;

    // A TamberUser or a TamberDataFolder. Before the screen is loaded, which fixes it; weak until then.
    void setContainer(const std::shared_ptr<TamberFilesContainer> &container) { _container = container; }
    std::shared_ptr<TamberFilesContainer> container() const { return _container.lock(); }
    // Before the screen is loaded; Browse at first.
    void setMode(Mode mode) { _mode = mode; }
    Mode mode() const { return _mode; }
    // Strong. A delegate that holds this screen takes itself back (null) when it is done with it.
    void setDelegate(const std::shared_ptr<TamberContainerViewControllerDelegate> &delegate);
    std::shared_ptr<TamberContainerViewControllerDelegate> delegate() const { return _delegate; }
    // The button that picks the user itself.
    void setActionButtonTitle(const QString &title) { _actionButtonTitle = title; }
    const QString &actionButtonTitle() const { return _actionButtonTitle; }
    // 2 for a user, 1 for a folder.
    int sectionsCount() const;

    // What waits for the device to be connected: 0 nothing, 1 send, 2 emboss, 3 fetch. It stays 1 or 2 after it was done.
    int afterConnectionAction() const;
    // A local store may have changed on the disk.
    void showAsItIs();
    void setEditing(bool editing) override;
    // To browse, and of a user: folders hold documents alone.
    bool canAddFolder() const;
    // Asks for its name.
    void addFolder();
    // For debugging, in no menu: adds a document whose title and text are the date.
    void handleAddDummyFileCommand();

    int numberOfSections() const override { return sectionsCount(); }
    int numberOfRows(int section) const override;
    TableCell cellForRow(IndexPath path) const override;
    QString titleForHeader(int section) const override;
    quintptr rowIdentity(IndexPath path) const override;
    EditingStyle editingStyle(IndexPath path) const override;
    QString emptyText() const override;
    QString searchText(IndexPath path) const override;

    void fileAddedAtIndex(StoreIndex index) override;
    void fileUpdatedAtIndex(StoreIndex index) override;
    void fileDeletedAtIndex(StoreIndex index) override;
    void folderAddedAtIndex(StoreIndex index) override;
    void folderDeletedAtIndex(StoreIndex index) override;
    void folderUpdatedAtIndex(StoreIndex index) override;

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;
    void viewWillDisappear() override;
    void didSelectRow(IndexPath path) override;
    void commitDelete(IndexPath path) override;
    void commitRename(IndexPath path) override;
    void controlActivated(IndexPath path, int control, bool on) override;

private:
    friend class ContainerScreen;
    bool isPicking() const { return _mode == Mode::PickFolder; }
    const ContainerContents &contents() const;
    // The one row that picks the user itself.
    bool isActionRow(int section) const;
    QString sizeText(const TamberDocument &document) const;
    // Folders with this folder's name are spoken with what tells them apart.
    void reloadTwins(StoreIndex index);
    // Of all sections, as they are now.
    int rowsInAll() const;
    void rowInserted(IndexPath path);
    void rowDeleted(IndexPath path);
    // Editing that has begun can always be ended.
    void updateEditButtonState();
    void addBarButtons();
    void addButtonClicked();
    void cancelClicked();
    void folderSelected(const std::shared_ptr<TamberDataFolder> &folder);
    void fileSelected(const ContainerItem &item);
    void runFileCommand(FileCommand command, const ContainerItem &item);
    void askForEditAction(const ContainerItem &item);

    AppContext &_context;
    std::weak_ptr<TamberFilesContainer> _container;
    Mode _mode = Mode::Browse;
    std::shared_ptr<TamberContainerViewControllerDelegate> _delegate;
    QString _actionButtonTitle;

    std::unique_ptr<ContainerScreen> _screen;
    std::unique_ptr<ContainerFileActions> _fileActions;
    std::unique_ptr<ContainerDeviceActions> _deviceActions;
    std::unique_ptr<ContainerEditing> _editing;
    std::unique_ptr<ContainerMoving> _moving;
};

} // namespace cvtamber
