// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/TamberPickUserOrFolderViewController.h"
#include "base/InterfaceBase.h"
#include "device_ui/CVTransferViewController.h"
#include "ui/ViewController.h"

#include <memory>

namespace cvtamber {

struct AppContext;
struct FileResult;
class CVFile;
class TamberDocument;
class TamberFilesContainer;

class MTextEditViewDelegate : public InterfaceBase
{
public:
    // The editor is to be dismissed.
    virtual void editViewCancelled() = 0;
};

// Shows one text, read-only, and lets a person keep it in the store or e-mail it. The text is put in by the opener, is a
// file's (setFile), or is fetched from the device when the screen first appears (setCvFileName).
//
//   unsaved -> saving (a place was picked) -> saved | unsaved (the save failed, which a notice tells)
// While it is saving, closing waits for the outcome. Without a Save button nothing is asked on closing. The end of the
// program asks what Done asks.
// Thread: main thread. Owner: shared, see ViewController.
class MTextEditViewController final : public cvtamber::ViewController,
                                      public CVTransferControllerDelegate,
                                      public TamberPickUserOrFolderViewControllerDelegate
{
    Q_OBJECT
    // The whole text; may be megabytes.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    // Always true: texts are shown and kept, not written here.
    Q_PROPERTY(bool readOnly READ isReadOnly CONSTANT)
    // A file is being opened: the text is still to come.
    Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged)

public:
    // Buttons of the action menu and of the question before closing, by index.
    enum ActionButton : int { MailTextButton, MailAttachmentButton, ActionCancelButton };
    enum CloseButton : int { CloseCancelButton, SaveAndCloseButton, CloseUnsavedButton };

    // The context outlives the editor.
    explicit MTextEditViewController(AppContext &context);
    ~MTextEditViewController() override;

    // Strong. A delegate that holds the editor takes itself back (null) when it is done with it.
    std::shared_ptr<MTextEditViewDelegate> delegate() const { return _delegate; }
    void setDelegate(const std::shared_ptr<MTextEditViewDelegate> &delegate) { _delegate = delegate; }
    // These three before the editor is loaded. A document to read:
    const std::shared_ptr<CVFile> &file() const { return _file; }
    void setFile(const std::shared_ptr<CVFile> &file) { _file = file; }
    // The name of a file on the device to fetch; comes before `file`. Null for none.
    const QString &cvFileName() const { return _cvFileName; }
    void setCvFileName(const QString &name) { _cvFileName = name; }
    // Save instead of the action menu; off at first.
    bool showSaveButton() const { return _showSaveButton; }
    void setShowSaveButton(bool show) { _showSaveButton = show; }

    const QString &text() const { return _text; }
    void setText(const QString &text);
    bool isReadOnly() const { return true; }
    bool isBusy() const { return _isBusy; }
    // Also where the first try failed and a later one of the store has worked.
    bool isSaved() const;

    // A text that would be lost with the editor.
    bool isUnsaved() const { return _showSaveButton && hasText() && !_isClosed && (!isSaved() || _isSaving); }
    // As Done. `closed` runs once the text is saved or given up; not at all where the person keeps the editor or the save
    // fails.
    void close(std::function<void()> closed);

    // What a person does, through the view.
    Q_INVOKABLE void hideKeyboardClicked();

    void cvTransferControllerTransferFinished(CVTransferViewController &transfer) override;
    // A fetch that the person has cancelled leaves nothing to show; one that failed can be tried again here.
    void cvTransferCloseClicked() override;
    void tamberPickUserOrFolderViewControllerUserPicked(TamberPickUserOrFolderViewController &picker,
                                                        const std::shared_ptr<TamberUser> &user) override;
    void tamberPickUserOrFolderViewControllerFolderPicked(
        TamberPickUserOrFolderViewController &picker,
        const std::shared_ptr<TamberDataFolder> &folder) override;

signals:
    void textChanged();
    void busyChanged();
    // The text view gives up the focus.
    void resignFirstResponder();

protected:
    void viewDidLoad() override;
    void viewDidAppear() override;

private:
    std::shared_ptr<MTextEditViewController> self();
    void addBarButtons();
    void openFile();
    void fileOpened(bool success);
    void setBusy(bool busy);
    void startFetch();
    // A file of the device has none until it was fetched: there is nothing to save, and nothing to lose.
    bool hasText() const { return _cvFileName.isNull() || _isFetched; }

    void askBeforeClosing();
    void tellCancelled();
    void saveButtonClicked();
    void placePicked(const ViewController &picker, const std::shared_ptr<TamberFilesContainer> &place);
    void saveTo(TamberFilesContainer &place);
    void saveEnded(const QString &title, const FileResult &result);
    void setSaving(bool saving);

    void actionButtonClicked();
    QString mailName() const;
    void mail(bool asAttachment);
    QByteArray attachmentBytes() const;
    // A notice, from the texts.
    void tell(const char *key) const;

    AppContext &_context;
    std::shared_ptr<MTextEditViewDelegate> _delegate;
    std::shared_ptr<CVFile> _file;
    QString _cvFileName;
    QString _text;
    bool _showSaveButton = false;
    bool _isBusy = false;
    // A fetch is due when the screen appears; it is started once, however it ends.
    bool _bDownloadAtView = false;
    bool _isFetched = false;
    std::shared_ptr<TamberDocument> _document;
    bool _isSaving = false;
    bool _closeAfterSave = false;
    bool _isAskingToClose = false;
    bool _isClosed = false;
    std::function<void()> _closed;
    std::weak_ptr<CVTransferViewController> _transferViewController;
};

} // namespace cvtamber
