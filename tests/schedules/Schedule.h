// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QStringList>

#include <chrono>
#include <optional>

namespace cvtamber {

// What a person asks of the device.
enum class Operation {
    InfoAndList,
    Put,
    PutTranslated,
    Get,
    GetBackTranslated,
    Emboss,
    EmbossTranslated,
    Remove,
    Chat,
};
constexpr int OperationCount = 9;

// What goes wrong meanwhile.
enum class Trouble {
    None,
    LinkLost,         // at a write, reported with an error
    LinkLostSilently, // at a write, reported as if nothing were wrong
    LostConfirmation, // of a write
    FailedWrite,
    LateAnswer,
    RepeatedNotifications,
    SplitNotifications,
    MergedNotifications,
    MissingService, // or characteristic
    ServicesNever,
    ConnectTrouble, // no answer, a refusal, or a link that ends at once or while it is discovered
    RefusedNotifications,
    RadioOff,
    DeviceLeaves,
    GarbageReply,
    NoAnswer,
    NoTrailer,
};
constexpr int TroubleCount = 18;

// One operation and one trouble, as a command line, its input and a device's profile: all that either a run on
// manual time or the real programs need. The same seed makes the same schedule on every machine.
struct Schedule
{
    quint32 seed = 0; // 0: not made from one
    Operation operation = Operation::InfoAndList;
    Trouble trouble = Trouble::None;
    int write = 0;                      // LinkLost ... FailedWrite: which, counted from 1
    std::chrono::milliseconds after{0}; // RadioOff, DeviceLeaves: when
    bool isOver = false;                // the trouble ends by itself
    QString text;                       // put, emboss, chat: what is sent
    QByteArray stored;                  // the file A.TXT on the device
    QByteArray profile;                 // JSON
    QStringList arguments;
    QByteArrayList input;

    static Schedule fromSeed(quint32 seed);
    // A trouble at one write, with a text of some 30 writes.
    static Schedule atWrite(Operation operation, Trouble trouble, int write);

    QString description() const;
    // Words for tables.
    static QString name(Operation operation);
    static QString name(Trouble trouble);
    // What the device does with replies may make the tools believe something else: it has no checks for that.
    bool distortsReplies() const;
};

} // namespace cvtamber
