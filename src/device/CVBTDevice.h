// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "device/BluetoothCentral.h"
#include "device/CVDeviceDelegates.h"
#include "device/CVFileData.h"
#include "device/CVTransports.h"
#include "device/DeviceStateRecord.h"
#include "device/DeviceTurn.h"
#include "device/IdleTimer.h"
#include "device/LinkObserver.h"
#include "device/TranslationMode.h"
#include "text/TextCodec.h"

#include <QList>

#include <functional>
#include <memory>

namespace cvtamber {

class CVBluetoothManager;

// What the device object needs from its surroundings. The references outlive it.
struct CVBTDeviceServices
{
    RunLoop &runLoop;
    SystemLog &log;
    IdleTimer &idleTimer;
    // Its central is borrowed for connecting to a chosen device.
    std::shared_ptr<CVBluetoothManager> bluetoothManager;
    // Makes the device object's own central, on the first connect without a chosen device. May be empty.
    BluetoothCentralFactory makeCentral;
};

// The one device object between the programs and the braille device: it owns the link, turns requests into
// the device's text commands, writes them in pieces of at most 20 bytes, collects replies until the line has
// been silent (2 seconds, 26 for a fetch), and hands each reply to the handler of the command that asked for
// it.
//
// States: not connected -> connecting (a connect sequence runs) -> connected (isConnectedAsCVComm; state 1 of
// the state delegate once identified) -> not connected. A lost link drops everything that was under way.
// Thread: main thread, from the run loop. Owner: start-up (gCVDevice); a test may make several.
// Nothing is thrown; what goes wrong comes through the delegates and the link observers.
//
// This class is a front: the work is done by the rooms behind it (see docs/architecture.md).
class CVBTDevice final
{
public:
    explicit CVBTDevice(const CVBTDeviceServices &services);
    CVBTDevice(const CVBTDevice &) = delete;
    CVBTDevice &operator=(const CVBTDevice &) = delete;
    ~CVBTDevice();

    // Delegates, one of each kind, held strongly.
    std::shared_ptr<CVDeviceStateDelegate> cvStateDelegate() const;
    void setCvStateDelegate(const std::shared_ptr<CVDeviceStateDelegate> &delegate);
    std::shared_ptr<CVDownloadFileDelegate> cvDownloadDelegate() const;
    void setCvDownloadDelegate(const std::shared_ptr<CVDownloadFileDelegate> &delegate);
    std::shared_ptr<CVUploadFileDelegate> cvUploadDelegate() const;
    void setCvUploadDelegate(const std::shared_ptr<CVUploadFileDelegate> &delegate);
    std::shared_ptr<CVBTDeviceDelegate> delegate() const;
    void setDelegate(const std::shared_ptr<CVBTDeviceDelegate> &delegate);
    void setDataDelegate(const std::shared_ptr<CVDataDelegate> &delegate);
    // Observers are not kept alive; adding one twice is the same as once.
    void addLinkObserver(LinkObserver &observer);
    void removeLinkObserver(LinkObserver &observer);

    // Connecting and disconnecting.
    void connectAsCVCommWithPeripheral(const BluetoothPeripheralPtr &peripheral);
    void connectAsCVComm(); // without a chosen device
    void connectPC();
    void disconnectAsCVComm(); // also ends an attempt to connect
    void disconnectPeripheral();
    // The one that the link is with; null without one.
    BluetoothPeripheralPtr peripheral() const;
    void startDiscoverInfoForPeripheral(const BluetoothPeripheralPtr &peripheral);
    // The characteristic whose value is read as the serial number; no program sets one.
    void setCvBtInfoCharacteristic(const std::weak_ptr<BluetoothCharacteristic> &characteristic);
    void cableConnected();
    void cableDisconnected();

    // The device's identity and state. Values keep what the last device told; the two languages are 0 while
    // not connected.
    bool isConnectedAsCVComm() const;
    void setIsConnectedAsCVComm(bool connected);
    int connectionType() const; // kind of link the device reported, 1 to 6; 0 when not connected
    int cvModel() const;
    void setCvModel(int model);
    QString cvFirmwareVersion() const; // null when unknown
    void setCvFirmwareVersion(const QString &version);
    QString cvSerialNumber() const; // null when unknown
    int cvLanguage() const;
    int cvKeyboardLanguage() const;
    int cvInterfaceLanguage() const { return 0; }
    char16_t cvLanguageSet() const;
    int cvBrailleCode() const;
    DeviceStateRecord cvDeviceStateData() const;
    bool advancedModeOn() const;
    bool embosserOn() const;
    StringEncoding stringEncoding() const;
    void setStringEncoding(StringEncoding encoding);
    int forwardGrade() const;
    void setForwardGrade(int grade);
    int backwardGrade() const;
    void setBackwardGrade(int grade);
    static int languageFromSet(char16_t set, unsigned dipSwitch);

    // Text.
    static QByteArray cvOutDataFromString(const QString &text, int language, qsizetype *replaced = nullptr);
    // Null when the bytes are not defined in the language's code page.
    static QString stringFromCvData(const QByteArray &data, int language);

    // The command engine. All of it may be called at any time; without a link the bytes go nowhere.
    void sendCommand(const QString &command);
    void sendWaitCommand(int number);
    void sendWaitCommand(int number, const QString &parameters);
    void sendFinalWaitCommand(const QString &command);
    // True when the bytes were only queued behind others. `replaced` receives the number of characters that
    // the device's code page lacks and that went out as "?" or without their marks.
    bool sendString(const QString &text, qsizetype *replaced = nullptr);
    bool sendStringForLanguage(const QString &text, int language, qsizetype *replaced = nullptr);
    bool sendData(const QByteArray &data);
    bool internalSendString(const QString &text);
    bool internalSendData(const QByteArray &data);
    void handleCommandData(const QByteArray &data);
    void startCommanndTimer();
    void stopCommandTimer();
    QString portName() const; // "USB" with a serial port, else "S2"
    int pendingCommand() const;
    // Where everybody who wants something of the device asks whether it may be now.
    DeviceTurn &turn();
    const DeviceTurn &turn() const;
    qsizetype queuedBytes() const;
    qsizetype unconfirmedWrites() const;

    // Files on the device.
    QList<CVFileData> files() const;
    void setFiles(const QList<CVFileData> &files);
    void refreshFilesWithCompletionHandler(const std::function<void()> &handler);
    int getFilesCount() const;
    QString getFileName(int index) const; // null out of range
    qint64 getFileSize(int index) const;  // -1 out of range
    qint64 getSizeOfFileWithName(const QString &name) const;
    bool fileExists(const QString &name) const;
    void getFile(const QString &name, int useTranslation);
    void sendFileWithName(const QString &name, const QString &text, int useTranslation);
    void embossString(const QString &text, int useTranslation);
    // Ends the store or emboss that is under way, and the link stays: what has not left of the text is dropped, the
    // commands behind it still close the file and switch the modes back, and no delegate is told of an end. Whether any
    // text was dropped, which leaves an incomplete file. A fetch has no such end, since the device sends all of it: it
    // keeps its turn until it is through.
    bool cancelUpload();
    void deleteFile(const QString &name);

    // Sound. The block is at least 15 bytes; a shorter one is refused.
    bool uploadSoundData(const QByteArray &data);

    // Transports other than Bluetooth (hooks; no program sets them).
    std::shared_ptr<CVConnectionProtocol> connection() const;
    void setConnection(const std::shared_ptr<CVConnectionProtocol> &connection);
    void serialPortWasOpened(const std::shared_ptr<CVSerialPort> &port);
    void serialPortDidReceiveData(const QByteArray &data);
    void serialPortDidWriteData();
    void serialPortWasRemovedFromSystem() {}

private:
    class Rooms;
    std::unique_ptr<Rooms> _rooms;
};

// The process's device object; set once at start-up by the programs, null in tests.
extern std::shared_ptr<CVBTDevice> gCVDevice;

} // namespace cvtamber
