// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "device/DeviceStateRecord.h"
#include "simulator/BraceScanner.h"
#include "simulator/DeviceProfile.h"

#include <QMap>

#include <functional>

namespace cvtamber {

// The device's firmware without its radio: bytes of the link go in, answers come out.
//
// What text outside commands is depends on what the device is doing:
//   editing    text to emboss (dropped while the embosser is off)
//   storing    the body of a file, from BEGIN NAME to END or FM NAME to FM END
//   sound      after FLASH: 14 header bytes, then sound bytes until the next command
//   chat       live text, sent back after each line end unless somebody takes it
//   board      live text, sent back as it comes unless somebody takes it
// While storing, the closing command and all other known commands are carried out; what is in braces and no
// command is text. FM and FE translate, and a fetch back-translates, only in advanced mode; see
// MarkedTranslation for what translating is here. The end of the link ends storing (what has come is kept as
// the file), sound, chat and board; grades and modes stay. Main thread; nothing here waits.
class FirmwareModel
{
public:
    enum class Activity { Editing, Storing, Sound, Chat, Board };

    // What the device says to a command: empty bytes for a command that has no answer. The command is empty
    // for live text.
    using Output = std::function<void(const QByteArray &command, const QByteArray &bytes)>;
    // Files, grades or the embosser page changed.
    using Changed = std::function<void()>;
    // Chat or the whiteboard begins, or the one that was on ends.
    using ActivityChanged = std::function<void(Activity)>;
    // Text of chat or the whiteboard; whether it was taken.
    using LiveText = std::function<bool(const QByteArray &bytes)>;

    static constexpr char FetchTrailer[] = "{PC\xFD}";

    explicit FirmwareModel(const DeviceProfile &profile);
    FirmwareModel(const FirmwareModel &) = delete;
    FirmwareModel &operator=(const FirmwareModel &) = delete;

    void setOutput(const Output &output) { _output = output; }
    void setChanged(const Changed &changed) { _changed = changed; }
    void setActivityChanged(const ActivityChanged &changed) { _activityChanged = changed; }
    void setLiveText(const LiveText &taker) { _liveText = taker; }

    void receive(QByteArrayView bytes);
    void linkClosed();

    Activity activity() const { return _activity; }
    const DeviceStateRecord &record() const { return _record; }
    const DeviceStorage &storage() const { return _storage; }
    const QByteArray &embosserPage() const { return _page; }
    const QByteArray &soundHeader() const { return _soundHeader; }
    const QByteArray &soundData() const { return _soundData; }
    // "OZ" or "USA" as last set by DFLN; empty before.
    const QByteArray &defaultLanguage() const { return _defaultLanguage; }
    bool inPcMode() const { return _inPcMode; }
    // The last MaximalLog commands received, without braces, those without a meaning included.
    const QList<QByteArray> &receivedCommands() const { return _receivedCommands; }
    // How often a command came, by its word in the command table ("PR", "EM OFF", "PC S2 ON").
    int commandCount(const QByteArray &word) const { return _commandCounts.value(word); }
    int unknownCommands() const { return _unknownCommands; }
    // Bytes that had no place: text while the embosser is off, and what was over the storage limit.
    qsizetype droppedBytes() const { return _droppedBytes + _storage.dropped(); }

    // What lasts between runs.
    void restore(const QList<SimulatedFile> &files, int backwardGrade, int forwardGrade,
                 const QByteArray &page);

private:
    using Handler = void (FirmwareModel::*)(const QByteArray &argument);
    struct Entry
    {
        Handler handler;
        bool takesArgument = false;
    };
    static constexpr qsizetype MaximalLog = 4096;
    static constexpr qsizetype MaximalChatLine = 4096;
    static constexpr qsizetype SoundHeaderSize = 14;

    static const QMap<QByteArray, Entry> &commandTable();

    void handleToken(const BraceScanner::Token &token);
    void handleText(const QByteArray &text);
    bool handleCommand(const QByteArray &command);
    void answer(const QByteArray &bytes);
    void changed();
    void appendBounded(QByteArray &to, const QByteArray &bytes);

    void openLink(const QByteArray &);
    void closePcMode(const QByteArray &);
    void ignore(const QByteArray &) {}
    void tellVersion(const QByteArray &);
    void tellExtendedVersion(const QByteArray &);
    void tellState(const QByteArray &);
    void tellFiles(const QByteArray &);
    void tellFree(const QByteArray &);
    void sendFile(const QByteArray &name);
    void selectS2(const QByteArray &);
    void selectUsb(const QByteArray &);
    void embosserOff(const QByteArray &);
    void embosserOn(const QByteArray &);
    void toggleAdvanced(const QByteArray &);
    void toggleBackUsb(const QByteArray &);
    void toggleBackS2(const QByteArray &);
    void toggleForwardEmbossing(const QByteArray &);
    void beginFile(const QByteArray &name);
    void beginTranslatedFile(const QByteArray &name);
    void endFile(const QByteArray &);
    void deleteFile(const QByteArray &name);
    void setForwardGrade(const QByteArray &grade);
    void setBackwardGrade(const QByteArray &grade);
    void beginSound(const QByteArray &);
    void defaultOz(const QByteArray &);
    void defaultUsa(const QByteArray &);
    void toggleBoard(const QByteArray &);
    void toggleChat(const QByteArray &);

    void setGrade(DeviceStateRecord::Field field, const QByteArray &grade);
    void toggleActivity(Activity activity);
    void takeSoundHeader(QByteArrayView &bytes);
    void echoLines(const QByteArray &text);
    void emboss(const QByteArray &text);
    void closeEmbosserMark();
    void stopActivity();

    DeviceProfile _profile;
    DeviceStorage _storage;
    DeviceStateRecord _record;
    BraceScanner _scanner;
    Output _output;
    Changed _changed;
    ActivityChanged _activityChanged;
    LiveText _liveText;

    Activity _activity = Activity::Editing;
    QByteArray _currentCommand;
    bool _inPcMode = false;
    bool _portIsUsb = false;
    QByteArray _openFile;
    QByteArray _body;
    bool _translateBody = false;
    QByteArray _chatLine;
    QByteArray _page;
    bool _embosserMarkOpen = false;
    QByteArray _soundHeader;
    QByteArray _soundData;
    QByteArray _defaultLanguage;
    QList<QByteArray> _receivedCommands;
    QMap<QByteArray, int> _commandCounts;
    int _unknownCommands = 0;
    qsizetype _droppedBytes = 0;
};

} // namespace cvtamber
