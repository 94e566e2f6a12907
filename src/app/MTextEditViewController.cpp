// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MTextEditViewController.h"

#include "app/AppContext.h"
#include "base/SystemLog.h"
#include "store/CVFile.h"
#include "store/StoreDisk.h"
#include "store/StoreNames.h"
#include "store/TamberDataFolder.h"
#include "store/TamberDocument.h"
#include "store/TamberUser.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

MTextEditViewController::MTextEditViewController(AppContext &context)
    : ViewController(context.presenter)
    , _context(context)
{}

MTextEditViewController::~MTextEditViewController() = default;

std::shared_ptr<MTextEditViewController> MTextEditViewController::self()
{
    return std::static_pointer_cast<MTextEditViewController>(shared_from_this());
}

void MTextEditViewController::setText(const QString &text)
{
    if (_text == text)
        return;
    _text = text;
    emit textChanged();
}

void MTextEditViewController::setBusy(bool busy)
{
    if (_isBusy == busy)
        return;
    _isBusy = busy;
    emit busyChanged();
}

// Loading

void MTextEditViewController::viewDidLoad()
{
    if (!_cvFileName.isNull()) {
        setTitle(_cvFileName);
        _bDownloadAtView = true;
    } else if (_file) {
        setTitle(_file->name());
        openFile();
    }
    addBarButtons();
}

void MTextEditViewController::addBarButtons()
{
    using Kind = BarButtonItem::Kind;
    setLeftItems({{Kind::Done, localized("Done"), true, [this] { close({}); }}});
    if (!hasText())
        setRightItems({{Kind::Refresh, localized("Fetch again"), true, [this] { startFetch(); }}});
    else if (_showSaveButton)
        setRightItems({{Kind::Save, localized("Save"), true, [this] { saveButtonClicked(); }}});
    else
        setRightItems({{Kind::Action, localized("Send"), true, [this] { actionButtonClicked(); }}});
}

void MTextEditViewController::openFile()
{
    setBusy(true);
    const std::weak_ptr<MTextEditViewController> editor = self();
    _file->openWithCompletionHandler([editor, file = _file.get()](bool success) {
        if (const auto self = editor.lock())
            self->fileOpened(success);
        if (success)
            file->closeWithCompletionHandler({});
    });
}

void MTextEditViewController::fileOpened(bool success)
{
    setBusy(false);
    if (!success)
        return;
    setText(_file->text());
    if (_file->text().isNull())
        tell("This document holds something that is not text.");
}

void MTextEditViewController::viewDidAppear()
{
    if (_bDownloadAtView && !_cvFileName.isNull())
        startFetch();
}

void MTextEditViewController::startFetch()
{
    const auto transfer = CVTransferViewController::withCorvaneFileToDownload(_context, _cvFileName);
    transfer->setDelegate(self());
    transfer->setModalPresentationStyle(PresentationStyle::FormSheet);
    transfer->setModalTransitionStyle(TransitionStyle::CrossDissolve);
    _transferViewController = transfer;
    const std::weak_ptr<MTextEditViewController> editor = self();
    presentViewController(transfer, true, [editor] {
        // The editor appears again after a fetch that failed, which must not start it anew.
        if (const auto self = editor.lock())
            self->_bDownloadAtView = false;
    });
}

void MTextEditViewController::cvTransferControllerTransferFinished(CVTransferViewController &transfer)
{
    if (_transferViewController.lock().get() != &transfer)
        return;
    _transferViewController.reset();
    _isFetched = true;
    addBarButtons();
    setText(transfer.downloadedString());
    // What is saved is named after it.
    setTitle(transfer.nameToKeep());
    _bDownloadAtView = false;
    if (presentedViewController().get() == &transfer)
        dismissViewController(true);
}

void MTextEditViewController::cvTransferCloseClicked()
{
    const auto transfer = _transferViewController.lock();
    if (transfer && !hasText() && transfer->problemText().isEmpty())
        tellCancelled();
}

void MTextEditViewController::hideKeyboardClicked()
{
    emit resignFirstResponder();
}

// Closing

void MTextEditViewController::close(std::function<void()> closed)
{
    _closed = std::move(closed);
    if (_isSaving)
        _closeAfterSave = true;
    else if (isUnsaved())
        askBeforeClosing();
    else
        tellCancelled();
}

void MTextEditViewController::askBeforeClosing()
{
    if (std::exchange(_isAskingToClose, true))
        return;
    AlertView alert;
    alert.title = title();
    alert.message = localized("6.1");
    alert.buttons = {localized("Cancel"), localized("6.2"), localized("6.3")};
    alert.cancelButtonIndex = CloseCancelButton;
    alert.didDismiss = [this](const AlertView &, int buttonIndex, const QString &) {
        _isAskingToClose = false;
        if (buttonIndex == SaveAndCloseButton) {
            _closeAfterSave = true;
            saveButtonClicked();
        } else if (buttonIndex == CloseUnsavedButton) {
            tellCancelled();
        } else {
            _closed = nullptr;
        }
    };
    showAlert(std::move(alert));
}

void MTextEditViewController::tellCancelled()
{
    _isClosed = true;
    if (const auto delegate = _delegate)
        delegate->editViewCancelled();
    if (const auto closed = std::exchange(_closed, nullptr))
        closed();
}

// Saving

void MTextEditViewController::saveButtonClicked()
{
    if (_isSaving)
        return;
    const auto picker = std::make_shared<TamberPickUserOrFolderViewController>(_context);
    picker->setMode(TamberPickUserOrFolderViewController::Mode::PickUserThenFolder);
    picker->setPickDelegate(self());
    picker->setActionButtonTitle(localized("5.1"));
    picker->setModalPresentationStyle(PresentationStyle::FormSheet);
    presentViewController(picker, true);
}

void MTextEditViewController::tamberPickUserOrFolderViewControllerUserPicked(
    TamberPickUserOrFolderViewController &picker, const std::shared_ptr<TamberUser> &user)
{
    placePicked(picker, user);
}

void MTextEditViewController::tamberPickUserOrFolderViewControllerFolderPicked(
    TamberPickUserOrFolderViewController &picker, const std::shared_ptr<TamberDataFolder> &folder)
{
    placePicked(picker, folder);
}

void MTextEditViewController::placePicked(const ViewController &picker,
                                          const std::shared_ptr<TamberFilesContainer> &place)
{
    if (presentedViewController().get() != &picker)
        return;
    if (place)
        setSaving(true);
    else
        _closed = nullptr;
    const std::weak_ptr<MTextEditViewController> editor = self();
    dismissViewController(true, [editor, place] {
        const auto self = editor.lock();
        if (self && place)
            self->saveTo(*place);
    });
}

bool MTextEditViewController::isSaved() const
{
    return _document && _document->lastResult().ok() && !_document->hasUnsavedChanges();
}

void MTextEditViewController::saveTo(TamberFilesContainer &place)
{
    const std::weak_ptr<MTextEditViewController> editor = self();
    _document =
        place.saveUnderFreeTitle(title(), _text, [editor](const QString &name, const FileResult &result) {
            if (const auto self = editor.lock())
                self->saveEnded(name, result);
        });
}

void MTextEditViewController::saveEnded(const QString &name, const FileResult &result)
{
    setSaving(false);
    if (!result.ok()) {
        _closed = nullptr;
        tell("The text has not been saved yet.");
        return;
    }
    _context.presenter.showNotice(localizedFormat("Saved as %@.", name));
    if (_closeAfterSave && !hasGone())
        tellCancelled();
}

void MTextEditViewController::setSaving(bool saving)
{
    _isSaving = saving;
    setItemEnabled(BarButtonItem::Kind::Save, !saving);
}

} // namespace cvtamber
