// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MTextEditViewController.h"
#include "app/TamberPickUserOrFolderViewController.h"
#include "base/InterfaceBase.h"
#include "device/DeviceTurn.h"
#include "device/LinkObserver.h"
#include "device_ui/CVTransferViewController.h"
#include "ui/TableViewController.h"

namespace cvtamber {

struct AppContext;
class MCVFilesViewController;
class TamberDataFolder;
class TamberFilesContainer;
class TamberUser;

class CVFilesViewDelegate : public InterfaceBase
{
public:
    // The name of the picked file, null for Cancel. The list is left to the delegate to dismiss.
    virtual void cvFilesViewDidSelectFile(MCVFilesViewController &view, const QString &file) = 0;
};

// Lists the files on the device, as the device object knows them: to view or delete one, or to pick one for a caller.
//
// While it asks the device for its files anew, one row with an activity indicator stands in place of the list. What a
// menu is about is held by its name: the list may be another when the answer comes.
// Thread: main thread. Owner: whoever presents it; the delegate is weak.
class MCVFilesViewController final : public TableViewController,
                                     public CVTransferControllerDelegate,
                                     public MTextEditViewDelegate,
                                     public TamberPickUserOrFolderViewControllerDelegate,
                                     public LinkObserver
{
    Q_OBJECT

public:
    enum class Mode : int { Browse = 0, PickFile = 1 };
    enum SheetTag : int { FileMenuTag = 1, DeleteConfirmationTag = 2 };

    // The context outlives the list.
    explicit MCVFilesViewController(AppContext &context);
    ~MCVFilesViewController() override;

    Mode mode() const { return _mode; }
    // Before the list is loaded; Browse at first.
    void setMode(Mode mode) { _mode = mode; }
    void setDelegate(const std::weak_ptr<CVFilesViewDelegate> &delegate) { _delegate = delegate; }
    bool isRefreshing() const { return _isRefreshing; }

    // Fetches a file into the store: into the current user's documents for button 1, else the person is asked where to.
    // No menu of this list leads here.
    void downloadFile(const QString &fileName, int buttonIndex);

    int numberOfRows(int section) const override;
    TableCell cellForRow(IndexPath path) const override;
    quintptr rowIdentity(IndexPath path) const override;
    QString emptyText() const override;

    void cvTransferControllerTransferFinished(CVTransferViewController &transfer) override;
    void cvTransferCloseClicked() override;
    void editViewCancelled() override;
    void tamberPickUserOrFolderViewControllerUserPicked(TamberPickUserOrFolderViewController &picker,
                                                        const std::shared_ptr<TamberUser> &user) override;
    void tamberPickUserOrFolderViewControllerFolderPicked(
        TamberPickUserOrFolderViewController &picker,
        const std::shared_ptr<TamberDataFolder> &folder) override;

    void linkConnected() override;
    void linkLost(const QString &reason) override;
    void linkClosed() override;

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;
    void didSelectRow(IndexPath path) override;

private:
    std::shared_ptr<MCVFilesViewController> self();
    void addBarButtons();
    void refreshClicked();
    void refresh();
    void filesRefreshed(DeviceTurn::End end);
    void cancelClicked();
    void showFileMenu(IndexPath path);
    void menuDismissed(const ActionSheet &sheet, int button, const QString &fileName, IndexPath path);
    void confirmDelete(const QString &fileName);
    void deleteFile(const QString &fileName);
    void viewFile(const QString &fileName);
    void dismissIfPresented(const Controller &controller);
    void askForDestination();
    void placePicked(const ViewController &picker, const std::shared_ptr<TamberUser> &user,
                     const std::shared_ptr<TamberDataFolder> &folder);
    void showProgressView();
    void keepDownload(const CVTransferViewController &transfer, TamberFilesContainer &place);
    // The first row of that name, -1 for none.
    int rowOf(const QString &fileName) const;
    // Why the device cannot be asked for the file by its name; empty when it can.
    QString nameProblem(const QString &fileName) const;
    bool isNameGood(const QString &fileName) const;
    // Whether the file can be worked on now; else a notice says why not.
    bool isWithinReach(const QString &fileName) const;

    AppContext &_context;
    std::weak_ptr<CVFilesViewDelegate> _delegate;
    Mode _mode = Mode::Browse;
    bool _isRefreshing = false;
    int _viewActionButtonIndex = -1;
    // Never assigned: its menu button does not exist.
    int _downloadActionButtonindex = 0;
    QString _downloadedFileName;
    std::weak_ptr<CVTransferViewController> _transferViewController;
    // The navigation that holds the editor.
    std::weak_ptr<ViewController> _textEditViewController;
    std::shared_ptr<TamberUser> _userToDownloadTo;
    std::shared_ptr<TamberDataFolder> _folderToDownloadTo;
};

} // namespace cvtamber
