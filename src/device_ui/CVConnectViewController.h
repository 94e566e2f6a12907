// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "device/BluetoothPeripheral.h"
#include "device/CVDeviceDelegates.h"
#include "device/LinkObserver.h"
#include "device_ui/CVBTViewController.h"
#include "ui/ViewController.h"

namespace cvtamber {

struct AppContext;
class CVConnectViewController;

class CVConnectViewDelegate
{
public:
    // Button indexes.
    enum Button : int {
        CancelButton = 0, // or no device was chosen
        DoneButton = 1,
    };

    CVConnectViewDelegate() = default;
    CVConnectViewDelegate(const CVConnectViewDelegate &) = delete;
    CVConnectViewDelegate &operator=(const CVConnectViewDelegate &) = delete;
    virtual ~CVConnectViewDelegate() = default;

    // Once for each dialog, which leaves it to the delegate to dismiss it.
    virtual void connectViewControllerDidClickedWithButton(CVConnectViewController &dialog, int button) = 0;
    // The device is connected and identified; the dialog is still up and may be dismissed at once.
    virtual void cvConnectViewDeviceConnected() {}
};

// The connect dialog: lets a person pick a device, has the device object connect to it, and shows how it goes.
//
//   choosing    the picker is up                                  -> connecting, or closed with CancelButton
//   connecting  busy; Cancel                                      -> connected | failed, or closed
//   connected   "Connected!", Done                                -> failed (the link was lost), or closed
//   failed      "Not connected!", Retry and Cancel                -> choosing (Retry), connected (it came late), or closed
//
// Of the device object's states 0 fails, 1 connects, and the others change nothing. A lost link, and 45 seconds of
// connecting without either state, count as 0. Retry always opens the picker again. Whoever leaves an attempt that
// is under way or has failed lets go of its link: a linked device shows up in no scan.
//
// It ends the trying of a link that is being made again. Thread: main thread. Owner: whoever presents it, which is the delegate (weak) and dismisses it.
class CVConnectViewController final : public cvtamber::ViewController,
                                      public CVBTViewDelegate,
                                      public LinkObserver
{
    Q_OBJECT
    // What the dialog is about, always shown: "Connecting to Corvane".
    Q_PROPERTY(QString connectingText READ connectingText CONSTANT)
    // Shows the activity indicator.
    Q_PROPERTY(bool busy READ isBusy NOTIFY changed)
    // How it ended: the result label is hidden for NoResult, green for Connected, red for NotConnected.
    Q_PROPERTY(Result result READ result NOTIFY changed)
    Q_PROPERTY(QString resultText READ resultText NOTIFY changed)
    // The buttons; hidden where not visible. Escape is Cancel where that is visible, else nothing.
    Q_PROPERTY(bool retryVisible READ isRetryVisible NOTIFY changed)
    Q_PROPERTY(bool cancelVisible READ isCancelVisible NOTIFY changed)
    Q_PROPERTY(bool doneVisible READ isDoneVisible NOTIFY changed)
    Q_PROPERTY(QString retryTitle READ retryTitle CONSTANT)
    Q_PROPERTY(QString cancelTitle READ cancelTitle CONSTANT)
    Q_PROPERTY(QString doneTitle READ doneTitle CONSTANT)

public:
    enum class Result { NoResult, Connected, NotConnected };
    Q_ENUM(Result)

    explicit CVConnectViewController(AppContext &context);
    // Connects to this device without asking for one.
    CVConnectViewController(AppContext &context, const BluetoothPeripheralPtr &peripheral);
    ~CVConnectViewController() override;

    void setDelegate(const std::weak_ptr<CVConnectViewDelegate> &delegate) { _delegate = delegate; }

    QString connectingText() const;
    bool isBusy() const { return _isBusy; }
    Result result() const;
    QString resultText() const;
    bool isRetryVisible() const { return _step == Step::Failed; }
    bool isCancelVisible() const { return _step == Step::Failed || _step == Step::Connecting; }
    bool isDoneVisible() const { return _step == Step::Connected; }
    QString retryTitle() const;
    QString cancelTitle() const;
    QString doneTitle() const;

    // What a person does, through the view; a button that is not visible does nothing.
    Q_INVOKABLE void retryButtonClicked();
    Q_INVOKABLE void cancelButtonClicked();
    Q_INVOKABLE void doneButtonClicked();

    void didSelectBTDevice(const CVBTPeripheralPtr &device) override;
    void linkStateChanged(int state) override;
    void linkLost(const QString &reason) override;

signals:
    void changed();

protected:
    void viewDidAppear() override;

private:
    enum class Step { Idle, Choosing, Connecting, Connected, Failed };

    void setStep(Step step, bool isBusy);
    void askForBluetoothDevice();
    void beginConnecting();
    void connectToPeripheral(const BluetoothPeripheralPtr &peripheral);
    void connected();
    void failed();
    void letGoOfLink();
    void actionButtonClicked(CVConnectViewDelegate::Button button);
    void tellDelegate(CVConnectViewDelegate::Button button);
    std::shared_ptr<CVConnectViewController> self();

    AppContext &_context;
    std::weak_ptr<CVConnectViewDelegate> _delegate;
    BluetoothPeripheralPtr _peripheral;
    Step _step = Step::Idle;
    bool _isBusy = false;
    bool _isAnswered = false;
    DelayedCall _connectLimit;
};

} // namespace cvtamber
