// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/DeviceTurn.h"
#include "device_ui/CVConnectViewController.h"
#include "ui/TableViewController.h"

#include <functional>
#include <vector>

namespace cvtamber {

// The device tab: whether the device is connected and what it tells of itself, with Connect or Disconnect, the UEB
// switch, the refresh and the list of its files, and above them the whiteboard and the chat while it is connected.
//
// It reads everything from the device object and stores nothing. It is a link observer all its life: a link lost while no
// connect dialog is up, and one that has come back, is told by a notice, whatever screen is shown. While the link is being
// made again the button ends the trying. Thread: main thread. Owner: start-up, through the tabs.
class CVDeviceTableViewController final : public TableViewController,
                                          public CVConnectViewDelegate,
                                          public LinkObserver
{
    Q_OBJECT

public:
    // The controls inside the rows.
    enum Control : int {
        ConnectButton = 1,
        SwitchUEBC,
        RefreshFilesButton,
        FilesActivityIndicator,
        ShowFilesButton,
        WhiteboardButton,
        ChatButton,
    };
    Q_ENUM(Control)

    explicit CVDeviceTableViewController(AppContext &context);
    ~CVDeviceTableViewController() override;

    int numberOfSections() const override;
    int numberOfRows(int section) const override;
    TableCell cellForRow(IndexPath path) const override;
    quintptr rowIdentity(IndexPath path) const override;
    bool allowsSelection() const override { return false; }
    // Its rows are a form.
    bool mayBeFiltered() const override { return false; }

    void connectViewControllerDidClickedWithButton(CVConnectViewController &dialog, int button) override;
    void linkStateChanged(int state) override;
    void linkConnected() override;
    void linkLost(const QString &reason) override;
    void linkClosed() override;

protected:
    void viewWillAppear() override;
    void detailDidChange() override { updateStateLabels(); }
    void controlActivated(IndexPath path, int control, bool on) override;

private:
    // The rows, each the same thing wherever it stands.
    enum class Row {
        State = 1,
        Files,
        Language,
        UEB,
        BrailleTable,
        Mode,
        Firmware,
        Model,
        SerialNumber,
        Version,
        NotSupported,
        Whiteboard,
        Chat,
    };
    using Section = std::vector<Row>;
    // What the device told when the labels were last filled.
    struct Details
    {
        bool isConnected = false;
        bool isAway = false;
        bool isUEBForced = false;
        QString firmware;
        QString model;
        QString language;
        QString mode;
        QString files;
        QString serialNumber;
        QString brailleTable;
    };

    std::vector<Section> layout() const;
    Row rowAt(IndexPath path) const;
    TableCell stateCell() const;
    TableCell filesCell() const;
    TableCell liveTextCell(int button) const;
    std::shared_ptr<ViewController> openLiveText(int button) const;
    TableCell uebcCell() const;
    void updateStateLabels();
    // Closes the chat or the whiteboard that is open beside this screen, then acts.
    void afterLiveText(const std::function<void()> &action);
    void tellLoss() const;
    void showChatSection(bool shows);
    Details connectedDetails() const;
    void connectButtonClicked();
    void disconnect();
    void connectDialogClosed();
    void switchUEBCClicked(bool on);
    void refreshFilesButtonClicked();
    void filesRefreshed(DeviceTurn::End end);
    void showFilesClicked();
    void chatClicked(int button);
    void cancelFileDialog();
    std::shared_ptr<CVDeviceTableViewController> self();

    AppContext &_context;
    std::shared_ptr<CVConnectViewController> _connectViewController;
    Details _details;
    bool _connectWindowsClosed = true;
    // Connected, and the connect dialog closed.
    bool _hasChatSection = false;
    bool _isBluetoothSupported = true;
    // The UEB switch as it was last sent; off at start, whatever the device has.
    bool _uebcOn = false;
    bool _isRefreshing = false;
    bool _isShowFilesVisible = false;
    bool _isLinkIdentified = false;
    // The link was lost and is being made again.
    bool _isAway = false;
};

} // namespace cvtamber
