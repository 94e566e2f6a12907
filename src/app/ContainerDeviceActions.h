// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device_ui/CVConnectViewController.h"
#include "device_ui/CVTransferViewController.h"
#include "device_ui/MCVFilesViewController.h"
#include "store/TamberDocument.h"

#include <memory>

namespace cvtamber {

class ContainerScreen;

// What a container browser does with the device: send and emboss a document, fetch a file into the container. What
// needs a device that is not connected yet waits for the connect dialog.
// Thread: main thread. Owner: the browser; the screens presented here know it through the browser's life.
class ContainerDeviceActions final : public CVConnectViewDelegate,
                                     public CVTransferControllerDelegate,
                                     public CVFilesViewDelegate
{
public:
    enum AfterConnection : int { Nothing = 0, Send = 1, Emboss = 2, Fetch = 3 };

    explicit ContainerDeviceActions(ContainerScreen &screen)
        : _screen(screen)
    {}

    void send(const std::shared_ptr<TamberDocument> &document);
    void emboss(const std::shared_ptr<TamberDocument> &document);
    void handleAddCVFileCommand();
    // Send and Emboss stay after they were done; Fetch does not.
    AfterConnection afterConnectionAction() const { return _afterConnectionAction; }

    void cvConnectViewDeviceConnected() override;
    void connectViewControllerDidClickedWithButton(CVConnectViewController &dialog, int button) override;
    // The dialog is closed and what waited for it is given up.
    void connectViewCloseClicked(CVConnectViewController &dialog);
    void cvTransferControllerTransferFinished(CVTransferViewController &transfer) override;
    void cvTransferCloseClicked() override;
    void cvFilesViewDidSelectFile(MCVFilesViewController &view, const QString &file) override;
    void cvFilesViewCancelled();

private:
    template<typename Protocol> std::shared_ptr<Protocol> self();
    bool isConnected() const;
    void initiateCVConnection(AfterConnection action);
    void runAfterConnection();
    void startFileTransfer();
    // Asks for another name, and is true, where the device has the name already or could not list it again.
    bool asksForOtherName(const std::shared_ptr<TamberDocument> &document, const QString &name);
    void askForNewFileNameToSend(const std::shared_ptr<TamberDocument> &document, const QString &problem,
                                 const QString &proposal);
    void sendUnlessRefused(const std::shared_ptr<TamberDocument> &document, const QString &name);
    void startSelectedFileTransfer(const std::shared_ptr<TamberDocument> &document);
    void startSelectedFileTransferWithNewName(const std::shared_ptr<TamberDocument> &document,
                                              const QString &name);
    using TextTaken = std::function<void(const QString &text)>;
    // Hands over what the device may be given of the text, unless the person thinks better of it.
    void openForTransfer(const std::shared_ptr<TamberDocument> &document, const TextTaken &taken);
    void askAboutBraces(const QString &text, const TextTaken &taken);
    void askAboutLostCharacters(const QString &text, const TextTaken &taken);
    void embossSelectedFile();
    void askFoCVFileToDownload();
    void startDownload(const QString &file);
    void keepDownload(const CVTransferViewController &transfer);
    void presentTransfer(const std::shared_ptr<CVTransferViewController> &transfer);
    void present(const std::shared_ptr<ViewController> &controller);
    // False, and nothing happens, when it was dismissed already or another screen is up. Null: whatever is up.
    bool dismissPresented(const ViewController *presented, ViewController::Completion completion);

    ContainerScreen &_screen;
    AfterConnection _afterConnectionAction = Nothing;
    // The document that Send and Emboss are about.
    std::shared_ptr<TamberDocument> _selectedDocument;
    // Cleared as soon as it is being dismissed, so that a second answer finds nothing.
    std::weak_ptr<ViewController> _presented;
    std::shared_ptr<CVTransferViewController> _transferViewController;
};

} // namespace cvtamber
