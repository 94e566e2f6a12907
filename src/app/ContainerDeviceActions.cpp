// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerDeviceActions.h"

#include "app/ContainerMenus.h"
#include "app/ContainerScreen.h"
#include "app/TamberContainerViewController.h"
#include "base/SystemLog.h"
#include "device/CVBTDevice.h"
#include "store/StoreContext.h"
#include "store/StoreDisk.h"
#include "store/StoreNames.h"
#include "text/DeviceNames.h"
#include "text/TextForDevice.h"
#include "ui/NavigationController.h"

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

constexpr int SendCancelButton = 0;

// A question whose first button, Cancel, does nothing.
AlertView sendQuestion(int tag, const QString &title, const QString &message, const QString &button)
{
    AlertView alert;
    alert.tag = tag;
    alert.title = title;
    alert.message = message;
    alert.buttons = {localized("Cancel"), button};
    alert.cancelButtonIndex = SendCancelButton;
    return alert;
}

// Why the device cannot keep a file of this name; empty when it can.
QString problemOfName(const QString &name, const CVBTDevice &device)
{
    switch (nameFault(name, device.cvKeyboardLanguage(), device.stringEncoding())) {
    case NameFault::Empty:
        return localized("A file on the Corvane needs a name.");
    case NameFault::NotText:
        return localized("The name holds a control character, which the Corvane cannot list.");
    case NameFault::Space:
        return localized("The Corvane would end the name at its first space.");
    case NameFault::Brace:
        return localized("The Corvane would take { or } in the name for a command.");
    case NameFault::Slash:
        return localized("The Corvane cannot keep a name with a slash.");
    case NameFault::Unlistable:
        return localized("The Corvane cannot list this name again. Letters from A to Z and digits are safe.");
    case NameFault::None:
        break;
    }
    return endsTranslatedStore(name)
               ? localized("The Corvane would take the name END for the end of the text.")
               : QString();
}

} // namespace

template<typename Protocol> std::shared_ptr<Protocol> ContainerDeviceActions::self()
{
    return {_screen.controller().shared_from_this(), this};
}

bool ContainerDeviceActions::isConnected() const
{
    return _screen.context().device.turn().isLinked();
}

void ContainerDeviceActions::present(const std::shared_ptr<ViewController> &controller)
{
    _presented = controller;
    _screen.controller().presentViewController(controller, true);
}

bool ContainerDeviceActions::dismissPresented(const ViewController *presented,
                                              ViewController::Completion completion)
{
    TamberContainerViewController &controller = _screen.controller();
    const auto expected = _presented.lock();
    if (!expected || (presented && expected.get() != presented) ||
        controller.presentedViewController() != expected)
        return false;
    _presented.reset();
    controller.dismissViewController(true, _screen.whileAlive(std::move(completion)));
    return true;
}

// Connecting

void ContainerDeviceActions::initiateCVConnection(AfterConnection action)
{
    _afterConnectionAction = action;
    const auto dialog = std::make_shared<CVConnectViewController>(_screen.context());
    dialog->setModalTransitionStyle(TransitionStyle::FlipHorizontal);
    dialog->setModalPresentationStyle(PresentationStyle::FormSheet);
    dialog->setDelegate(self<CVConnectViewDelegate>());
    present(dialog);
}

void ContainerDeviceActions::cvConnectViewDeviceConnected()
{
    dismissPresented(nullptr, [this] { runAfterConnection(); });
}

void ContainerDeviceActions::runAfterConnection()
{
    switch (_afterConnectionAction) {
    case Nothing:
        break;
    case Send:
        startFileTransfer();
        break;
    case Emboss:
        embossSelectedFile();
        break;
    case Fetch:
        handleAddCVFileCommand();
        _afterConnectionAction = Nothing;
        break;
    }
}

void ContainerDeviceActions::connectViewControllerDidClickedWithButton(CVConnectViewController &dialog, int)
{
    dismissPresented(&dialog, [] {});
}

void ContainerDeviceActions::connectViewCloseClicked(CVConnectViewController &dialog)
{
    dismissPresented(&dialog, [] {});
    _afterConnectionAction = Nothing;
}

// Sending

void ContainerDeviceActions::send(const std::shared_ptr<TamberDocument> &document)
{
    _screen.context().log.info(u"Send to CV"_s);
    _selectedDocument = document;
    if (isConnected())
        startFileTransfer();
    else
        initiateCVConnection(Send);
}

void ContainerDeviceActions::startFileTransfer()
{
    const auto document = _selectedDocument;
    if (!_screen.isStillThere({document, nullptr}))
        return;
    const QString name = document->fileURL().nameWithoutExtension();
    if (!asksForOtherName(document, name))
        startSelectedFileTransfer(document);
}

bool ContainerDeviceActions::asksForOtherName(const std::shared_ptr<TamberDocument> &document,
                                              const QString &name)
{
    const CVBTDevice &device = _screen.context().device;
    const QString problem = problemOfName(name, device);
    if (problem.isEmpty()) {
        const bool isTaken = device.fileExists(name);
        if (isTaken)
            askForNewFileNameToSend(document, {}, name);
        return isTaken;
    }
    const QString title = name.isEmpty() ? document->fileURL().nameWithoutExtension() : name;
    askForNewFileNameToSend(
        document, problem,
        suggestedDeviceName(title, device.cvKeyboardLanguage(), device.stringEncoding(),
                            [&device](const QString &other) { return device.fileExists(other); }));
    return true;
}

void ContainerDeviceActions::askForNewFileNameToSend(const std::shared_ptr<TamberDocument> &document,
                                                     const QString &problem, const QString &proposal)
{
    AlertView alert = sendQuestion(NameForSendingTag, localized("4.4"), localized("4.5"), localized("OK"));
    if (!problem.isEmpty()) {
        alert.title = localized("Another name is needed");
        alert.message = problem + u' ' + localized("Enter another name.");
    }
    alert.textField = AlertTextField{proposal, false, false};
    alert.didDismiss = [this, document](const AlertView &, int buttonIndex, const QString &text) {
        if (buttonIndex != SendCancelButton)
            sendUnlessRefused(document, text);
    };
    _screen.ask(alert);
}

void ContainerDeviceActions::sendUnlessRefused(const std::shared_ptr<TamberDocument> &document,
                                               const QString &name)
{
    if (!asksForOtherName(document, name))
        startSelectedFileTransferWithNewName(document, name);
}

void ContainerDeviceActions::startSelectedFileTransfer(const std::shared_ptr<TamberDocument> &document)
{
    openForTransfer(document, [this, name = document->fileURL().nameWithoutExtension()](const QString &text) {
        auto transfer =
            CVTransferViewController::withInputTextAndOutputFilename(_screen.context(), text, name);
        transfer->setModalTransitionStyle(TransitionStyle::CrossDissolve);
        transfer->setModalPresentationStyle(PresentationStyle::FormSheet);
        presentTransfer(transfer);
    });
}

void ContainerDeviceActions::startSelectedFileTransferWithNewName(
    const std::shared_ptr<TamberDocument> &document, const QString &name)
{
    openForTransfer(document, [this, name](const QString &text) {
        auto transfer =
            CVTransferViewController::withInputTextAndOutputFilename(_screen.context(), text, name);
        transfer->setModalTransitionStyle(TransitionStyle::CrossDissolve);
        presentTransfer(transfer);
    });
}

void ContainerDeviceActions::openForTransfer(const std::shared_ptr<TamberDocument> &document,
                                             const TextTaken &taken)
{
    if (_screen.isStillThere({document, nullptr}))
        _screen.openText(document, [this, taken](const QString &text) { askAboutBraces(text, taken); });
}

// What stands in braces the device obeys, wherever the document came from.
void ContainerDeviceActions::askAboutBraces(const QString &text, const TextTaken &taken)
{
    const auto line = lineOfFirst(text, u"{}");
    if (!line) {
        askAboutLostCharacters(text, taken);
        return;
    }
    AlertView alert =
        sendQuestion(BracesTag, localized("This text holds { or }"),
                     localizedFormat("The first one is in line %@. The Corvane would take it for a command.",
                                     QString::number(*line)),
                     localized("Send with ( and ) instead"));
    alert.didDismiss = [this, text, taken](const AlertView &, int buttonIndex, const QString &) {
        if (buttonIndex != SendCancelButton)
            askAboutLostCharacters(withoutBraces(text), taken);
    };
    _screen.ask(alert);
}

void ContainerDeviceActions::askAboutLostCharacters(const QString &text, const TextTaken &taken)
{
    const CVBTDevice &device = _screen.context().device;
    const PlainText plain = plainForDevice(text, device.cvKeyboardLanguage(), device.cvLanguage());
    if (plain.lost == 0) {
        taken(plain.text);
        return;
    }
    AlertView alert = sendQuestion(
        LostCharactersTag,
        localizedFormat("Characters that the Corvane does not have: %@", QString::number(plain.lost)),
        localizedFormat("They become question marks or lose their accents: %@",
                        plain.examples.join(QStringLiteral(", "))),
        localized("Send anyway"));
    alert.didDismiss = [taken, text = plain.text](const AlertView &, int buttonIndex, const QString &) {
        if (buttonIndex != SendCancelButton)
            taken(text);
    };
    _screen.ask(alert);
}

void ContainerDeviceActions::emboss(const std::shared_ptr<TamberDocument> &document)
{
    _selectedDocument = document;
    if (isConnected())
        embossSelectedFile();
    else
        initiateCVConnection(Emboss);
}

void ContainerDeviceActions::embossSelectedFile()
{
    const auto document = _selectedDocument;
    openForTransfer(document, [this, name = document->name()](const QString &text) {
        auto transfer = CVTransferViewController::withInputTextAndCaption(_screen.context(), text,
                                                                          localizedFormat("4.6", name));
        transfer->setModalTransitionStyle(TransitionStyle::CrossDissolve);
        presentTransfer(transfer);
    });
}

// Fetching

void ContainerDeviceActions::handleAddCVFileCommand()
{
    if (isConnected())
        askFoCVFileToDownload();
    else
        initiateCVConnection(Fetch);
}

void ContainerDeviceActions::askFoCVFileToDownload()
{
    const auto files = std::make_shared<MCVFilesViewController>(_screen.context());
    files->setMode(MCVFilesViewController::Mode::PickFile);
    files->setDelegate(self<CVFilesViewDelegate>());
    const auto navigation = NavigationController::withRoot(_screen.context().presenter, files);
    navigation->setModalPresentationStyle(PresentationStyle::FormSheet);
    present(navigation);
}

void ContainerDeviceActions::cvFilesViewDidSelectFile(MCVFilesViewController &, const QString &file)
{
    _screen.context().log.info(SystemLog::masked(file));
    dismissPresented(nullptr, [this, file] {
        if (!file.isNull())
            startDownload(file);
    });
}

void ContainerDeviceActions::cvFilesViewCancelled()
{
    dismissPresented(nullptr, [] {});
}

void ContainerDeviceActions::startDownload(const QString &file)
{
    auto transfer = CVTransferViewController::withCorvaneFileToDownload(_screen.context(), file);
    transfer->setModalPresentationStyle(PresentationStyle::FormSheet);
    presentTransfer(transfer);
}

void ContainerDeviceActions::keepDownload(const CVTransferViewController &transfer)
{
    _screen.context().log.info(SystemLog::masked(transfer.downloadedString()));
    if (const auto &container = _screen.contents().filesContainer())
        container->saveUnderFreeTitle(
            transfer.nameToKeep(), transfer.downloadedString(),
            [&presenter = _screen.context().presenter,
             wanted = transfer.downloadedFileName()](const QString &title, const FileResult &result) {
                if (result.ok() && title != wanted)
                    presenter.showNotice(localizedFormat("Saved as %@.", title));
            });
}

// Transfers

void ContainerDeviceActions::presentTransfer(const std::shared_ptr<CVTransferViewController> &transfer)
{
    transfer->setDelegate(self<CVTransferControllerDelegate>());
    _transferViewController = transfer;
    present(transfer);
}

void ContainerDeviceActions::cvTransferControllerTransferFinished(CVTransferViewController &transfer)
{
    // Held here, because the dismissal lets go of it.
    const auto finished = std::exchange(_transferViewController, {});
    if (finished.get() != &transfer)
        return;
    dismissPresented(&transfer, [] {});
    if (transfer.remoteOutputFilename().isNull() && transfer.inputText().isNull())
        keepDownload(transfer);
}

void ContainerDeviceActions::cvTransferCloseClicked()
{
    if (const auto closed = std::exchange(_transferViewController, {}))
        dismissPresented(closed.get(), [] {});
}

} // namespace cvtamber
