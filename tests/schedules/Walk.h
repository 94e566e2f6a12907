// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device_ui/CVTransferViewController.h"
#include "device_ui/DeviceScreenBench.h"
#include "schedules/Dice.h"

#include <QMap>
#include <QSet>

namespace cvtamber {

class CVDeviceTableViewController;
class NavigationController;

// Presents a transfer, and counts what it is told.
class TransferHost final : public CVTransferControllerDelegate
{
public:
    void cvTransferControllerTransferFinished(CVTransferViewController &transfer) override
    {
        ++finished[&transfer];
    }
    void cvTransferCloseClicked() override {}

    QMap<const CVTransferViewController *, int> finished;
};

// A person who does what can be done on the screens, step after step, while the links to two devices are lost, stall and
// come back; on manual time. After each step, once nothing is under way, and at the end the devices are looked at: their
// modes are what they were, no file has changed that was not asked for, no text was obeyed, what chat shows was said,
// and nothing waits for ever.
class Walk
{
public:
    explicit Walk(quint32 seed);
    ~Walk();

    // Null when everything that must hold holds; else what does not, in words.
    QString run();
    // What was done, in order.
    const QStringList &steps() const { return _steps; }

private:
    static constexpr int Devices = 2;
    static DeviceProfile profileOf(int index);

    void step();
    void act();
    bool answerQuestion();
    void disturb();
    void actOnDeviceScreen();
    void actOnTransfer(CVTransferViewController &transfer);
    void startTransfer();
    int answerFor(const CVTransferViewController &transfer);
    void say();
    void write();
    bool click(int control);
    void note(const QString &what) { _steps.append(what); }

    SimulatedDevice *linked() const;
    bool isQuiet() const;
    QString judge() const;
    QString judgeModes(SimulatedDevice &device) const;
    QString judgeFiles(int index) const;
    QString judgeChat() const;
    // Everything comes back and is put away; then both devices are visited once.
    QString goHome();
    void endTroubles();
    bool visit(int index);
    bool leaveScreens();

    Dice _dice;
    DeviceScreenBench _bench;
    std::shared_ptr<CVDeviceTableViewController> _screen;
    std::shared_ptr<NavigationController> _navigation;
    std::shared_ptr<TransferHost> _host;
    const bool _embossesTranslated;
    QStringList _steps;
    QString _fault;                       // met in a step
    QMap<QByteArray, QByteArray> _stored; // by name: what was begun to be stored, on any device
    QSet<QByteArray> _mayBeGone;
    QString _clickedFile;
    QSet<QString> _said; // lines that may be shown in the chat
    int _number = 0;
    // A write has failed: what the device has of it is not known until it is met again.
    bool _hasFailedWrite = false;
    bool _isInDoubt = false;
};

} // namespace cvtamber
