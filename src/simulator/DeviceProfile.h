// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/BluetoothCentral.h"
#include "device/BluetoothIdentifiers.h"
#include "simulator/DeviceStorage.h"
#include "simulator/FaultScript.h"

#include <QMap>

#include <chrono>

namespace cvtamber {

// The longest value of a characteristic, in bytes.
constexpr int MaximalValue = 512;

// The brace form of the answer to the link command.
enum class LinkReplyForm {
    Upper,   // {PC and the link code}
    Lower,   // {pc and the link code}
    Doubled, // {{PC and the link code}}
};

// Where the device tells its serial number and name before the protocol starts.
enum class InfoPlace { DeviceService, GenericAccessService, Nowhere };

struct DeviceDelays
{
    std::chrono::milliseconds connect{60};
    std::chrono::milliseconds discover{30};
    std::chrono::milliseconds read{20};
    std::chrono::milliseconds write{8};         // from one write to its confirmation
    std::chrono::milliseconds reply{20};        // from the end of a command to its answer
    std::chrono::milliseconds notification{4};  // between two notifications
    std::chrono::milliseconds advertising{100}; // between two advertisements
};

// The device is out of range from `after` on, for `duration`; for good when that is negative. `after` counts from the start,
// or from the first such command.
struct Absence
{
    QByteArray command;
    std::chrono::milliseconds after{0};
    std::chrono::milliseconds duration{-1};
};

// What the person at the device types to a line of chat or a word of the whiteboard.
struct PartnerAnswer
{
    QString when;                          // "*" stands for any text; null: said when the mode begins
    QList<QByteArray> say;                 // each with its line end, where it has one
    std::chrono::milliseconds after{1000}; // before each of them
};

// Everything about one simulated device, as a profile file describes it. Bytes are the device's own codes.
struct DeviceProfile
{
    QString name = QStringLiteral("Corvane Scribe Plus"); // told with the serial number
    QString advertisedName = name;                        // null: none
    QList<BluetoothUuid> advertisedServices{BluetoothIdentifiers::deviceService()};
    QString address;         // "C2:34:..." in upper case; null: made from the serial number
    bool remembered = false; // the Bluetooth daemon knows it from earlier
    InfoPlace info = InfoPlace::DeviceService;
    QString infoText; // instead of serial number, comma, name; null: those

    QByteArray serial = QByteArrayLiteral("10472356");  // 8 characters
    int model = 2;                                      // 1 to 4
    QByteArray firmware = QByteArrayLiteral("2.1A004"); // 7 characters, the fourth is the language set
    int languageSwitch = 1;
    int language = 2; // field 8 of the state record
    int linkCode = 17;
    LinkReplyForm linkReply = LinkReplyForm::Upper;
    QMap<int, int> stateFields; // over what the state record begins with

    QList<SimulatedFile> files;
    qsizetype storageLimit = 8LL * 1024 * 1024;
    SizeStyle sizes = SizeStyle::Decimal;
    bool persistent = true;

    int maximalNotification = 20; // bytes
    DeviceDelays delays;
    // Without any, what comes is sent back.
    QList<PartnerAnswer> chat;
    QList<PartnerAnswer> board;
    QList<Fault> faults;
    QList<BluetoothUuid> missing; // services and characteristics
    QList<Absence> absences;
};

// The radio that the devices are in reach of.
struct RadioProfile
{
    BluetoothCentral::State state = BluetoothCentral::State::PoweredOn;
    // Negative: never.
    std::chrono::milliseconds onAfter{-1};
    std::chrono::milliseconds offAfter{-1};
};

// The Bluetooth daemon that stands between the radio and its clients on a D-Bus, where there is one.
struct DaemonProfile
{
    // Negative: never.
    std::chrono::milliseconds restartsAfter{-1};
    std::chrono::milliseconds restartTakes{500};
    // The times below are those of BlueZ and of the kernel.
    std::chrono::milliseconds forgetsAfter{30000};   // a device that was never connected to, without a scan
    std::chrono::milliseconds connectTimeout{20000}; // while the device does not advertise
    std::chrono::milliseconds answerTimeout{30000};  // an unconfirmed write then ends the link
    bool keepsServices = true;                       // on the bus, over the end of a link
    bool linksEndWithClients = false;                // when the client that connected leaves the bus
};

struct DeviceProfileSet
{
    RadioProfile radio;
    DaemonProfile daemon;
    QList<DeviceProfile> devices;

    // One English device with a few files, as used where no profile is named.
    static DeviceProfileSet builtIn();
};

} // namespace cvtamber
