// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/FirmwareModel.h"

#include "simulator/MarkedTranslation.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

using Field = DeviceStateRecord::Field;

constexpr int TypeThreeCodes[] = {34, 44};
constexpr char SoundRequest = '\x02';

char modelLetter(int model)
{
    return "?WPFL"[model];
}

} // namespace

FirmwareModel::FirmwareModel(const DeviceProfile &profile)
    : _profile(profile)
    , _storage(profile.storageLimit)
{
    _record[Field::LanguageNumber] = profile.language;
    _record[Field::EmbosserOutput] = 1;
    _record[Field::BackwardGrade] = 1;
    _record[Field::ForwardGrade] = 1;
    for (auto field = profile.stateFields.cbegin(); field != profile.stateFields.cend(); ++field)
        _record[field.key()] = field.value();
    _storage.setFiles(profile.files);
}

void FirmwareModel::restore(const QList<SimulatedFile> &files, int backwardGrade, int forwardGrade,
                            const QByteArray &page)
{
    _storage.setFiles(files);
    _record[Field::BackwardGrade] = backwardGrade;
    _record[Field::ForwardGrade] = forwardGrade;
    _page = page.left(_profile.storageLimit);
}

void FirmwareModel::receive(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        takeSoundHeader(bytes);
        // Byte by byte while a command could be under way: FLASH changes how the bytes after it are read.
        const qsizetype brace = bytes.indexOf('}');
        const qsizetype piece = brace < 0 ? bytes.size() : brace + 1;
        _scanner.feed(bytes.first(piece), [this](const BraceScanner::Token &token) { handleToken(token); });
        bytes = bytes.sliced(piece);
    }
}

void FirmwareModel::linkClosed()
{
    _scanner.reset();
    stopActivity();
    _inPcMode = false;
}

void FirmwareModel::stopActivity()
{
    if (_activity == Activity::Storing)
        endFile({});
    _chatLine.clear();
    const Activity ended = std::exchange(_activity, Activity::Editing);
    if (_activityChanged && (ended == Activity::Chat || ended == Activity::Board))
        _activityChanged(_activity);
}

void FirmwareModel::handleToken(const BraceScanner::Token &token)
{
    if (token.kind == BraceScanner::Token::Kind::Command) {
        _receivedCommands.append(token.bytes);
        if (_receivedCommands.size() > MaximalLog)
            _receivedCommands.removeFirst();
        if (handleCommand(token.bytes))
            return;
        ++_unknownCommands;
        if (_activity == Activity::Editing)
            return;
    }
    handleText(token.raw);
}

void FirmwareModel::handleText(const QByteArray &text)
{
    const bool isLive = _activity == Activity::Chat || _activity == Activity::Board;
    if (isLive && _liveText && _liveText(text))
        return;
    switch (_activity) {
    case Activity::Editing:
        emboss(text);
        break;
    case Activity::Storing:
        appendBounded(_body, text);
        break;
    case Activity::Sound:
        appendBounded(_soundData, text);
        break;
    case Activity::Chat:
        echoLines(text);
        break;
    case Activity::Board:
        _currentCommand.clear();
        answer(text);
        break;
    }
}

bool FirmwareModel::handleCommand(const QByteArray &command)
{
    const auto &table = commandTable();
    auto entry = table.constFind(command);
    QByteArray argument;
    if (entry == table.cend() || entry->takesArgument) {
        const qsizetype space = command.indexOf(' ');
        if (space < 0)
            return false;
        argument = command.mid(space + 1);
        entry = table.constFind(command.left(space));
        if (entry == table.cend() || !entry->takesArgument || argument.isEmpty())
            return false;
    }
    ++_commandCounts[entry.key()];
    if (_activity == Activity::Sound)
        _activity = Activity::Editing;
    _currentCommand = command;
    (this->*entry->handler)(argument);
    // A command without an answer of its own is told too: a script may have one for it.
    if (!_currentCommand.isEmpty())
        answer({});
    return true;
}

void FirmwareModel::answer(const QByteArray &bytes)
{
    const QByteArray command = std::exchange(_currentCommand, {});
    if (_output)
        _output(command, bytes);
}

void FirmwareModel::changed()
{
    if (_changed)
        _changed();
}

void FirmwareModel::appendBounded(QByteArray &to, const QByteArray &bytes)
{
    const qsizetype room = std::max(qsizetype{0}, _profile.storageLimit - to.size());
    to += bytes.left(room);
    _droppedBytes += std::max(qsizetype{0}, bytes.size() - room);
}

const QMap<QByteArray, FirmwareModel::Entry> &FirmwareModel::commandTable()
{
    using F = FirmwareModel;
    static const QMap<QByteArray, Entry> table{
        {"PC S2 ON", {&F::openLink}},
        {"PC USB ON", {&F::openLink}},
        {"PC S2 OFF", {&F::closePcMode}},
        {"PC USB OFF", {&F::closePcMode}},
        {"VER", {&F::tellVersion}},
        {"VER1", {&F::tellExtendedVersion}},
        {"PCR", {&F::tellState}},
        {"DIR", {&F::tellFiles}},
        {"FREE", {&F::tellFree}},
        {"PR", {&F::sendFile, true}},
        {"NW", {&F::ignore}},
        {"NW OFF", {&F::ignore}},
        {"USB HS S", {&F::ignore}},
        {"USB HS H", {&F::ignore}},
        {"USB OFF", {&F::ignore}},
        {"USB ON", {&F::selectUsb}},
        {"S2 ON", {&F::selectS2}},
        {"S1 OFF", {&F::ignore}},
        {"EM OFF", {&F::embosserOff}},
        {"EM ON", {&F::embosserOn}},
        {"ADV", {&F::toggleAdvanced}},
        {"BUSB", {&F::toggleBackUsb}},
        {"BS2", {&F::toggleBackS2}},
        {"FE", {&F::toggleForwardEmbossing}},
        {"BEGIN", {&F::beginFile, true}},
        {"END", {&F::endFile}},
        {"FM", {&F::beginTranslatedFile, true}},
        {"FM END", {&F::endFile}},
        {"DEL", {&F::deleteFile, true}},
        {"FGR", {&F::setForwardGrade, true}},
        {"BGR", {&F::setBackwardGrade, true}},
        {"FLASH", {&F::beginSound}},
        {"DFLN OZ", {&F::defaultOz}},
        {"DFLN USA", {&F::defaultUsa}},
        {"BOARD", {&F::toggleBoard}},
        {"CHAT", {&F::toggleChat}},
    };
    return table;
}

void FirmwareModel::openLink(const QByteArray &)
{
    _inPcMode = true;
    _portIsUsb = _currentCommand.contains("USB");
    const QByteArray word = _profile.linkReply == LinkReplyForm::Lower ? "pc" : "PC";
    const QByteArray reply = '{' + word + static_cast<char>(_profile.linkCode) + '}';
    answer(_profile.linkReply == LinkReplyForm::Doubled ? '{' + reply + '}' : reply);
}

void FirmwareModel::closePcMode(const QByteArray &)
{
    _inPcMode = false;
}

// Type 3 tells its serial number and a model letter, the others a digit for the model.
void FirmwareModel::tellVersion(const QByteArray &)
{
    const bool typeThree = std::find(std::begin(TypeThreeCodes), std::end(TypeThreeCodes),
                                     _profile.linkCode) != std::end(TypeThreeCodes);
    if (typeThree)
        answer(_profile.firmware + _profile.serial + modelLetter(_profile.model));
    else
        answer(_profile.firmware + static_cast<char>('0' + _profile.model - 1));
}

void FirmwareModel::tellExtendedVersion(const QByteArray &)
{
    answer(_profile.firmware + _profile.serial + modelLetter(_profile.model) +
           static_cast<char>('0' + _profile.languageSwitch));
}

void FirmwareModel::tellState(const QByteArray &)
{
    QByteArrayList numbers;
    for (const qint32 field : _record.fields)
        numbers.append(QByteArray::number(field));
    answer(numbers.join(", "));
}

void FirmwareModel::tellFiles(const QByteArray &)
{
    answer(_storage.listing(_profile.sizes));
}

void FirmwareModel::tellFree(const QByteArray &)
{
    answer(QByteArray::number(_storage.available()) + "\r\n");
}

void FirmwareModel::sendFile(const QByteArray &name)
{
    const auto port = _portIsUsb ? Field::BackTranslationOnUsb : Field::BackTranslationOnS2;
    QByteArray bytes;
    if (const auto stored = _storage.find(name)) {
        const bool translate = _record[Field::AdvancedMode] != 0 && _record[port] != 0;
        bytes = translate ? MarkedTranslation::backward(*stored, _record[Field::BackwardGrade]) : *stored;
    }
    answer(bytes + FetchTrailer);
}

void FirmwareModel::selectS2(const QByteArray &)
{
    _portIsUsb = false;
}

void FirmwareModel::selectUsb(const QByteArray &)
{
    _portIsUsb = true;
}

void FirmwareModel::embosserOff(const QByteArray &)
{
    _record[Field::EmbosserOutput] = 0;
}

void FirmwareModel::embosserOn(const QByteArray &)
{
    _record[Field::EmbosserOutput] = 1;
}

void FirmwareModel::toggleAdvanced(const QByteArray &)
{
    closeEmbosserMark();
    _record[Field::AdvancedMode] = _record[Field::AdvancedMode] == 0 ? 1 : 0;
}

void FirmwareModel::toggleBackUsb(const QByteArray &)
{
    _record[Field::BackTranslationOnUsb] = _record[Field::BackTranslationOnUsb] == 0 ? 1 : 0;
}

void FirmwareModel::toggleBackS2(const QByteArray &)
{
    _record[Field::BackTranslationOnS2] = _record[Field::BackTranslationOnS2] == 0 ? 1 : 0;
}

void FirmwareModel::toggleForwardEmbossing(const QByteArray &)
{
    closeEmbosserMark();
    auto &field = _record[Field::ForwardTranslationForEmbossing];
    field = field == 0 ? 1 : 0;
}

void FirmwareModel::beginFile(const QByteArray &name)
{
    stopActivity();
    _openFile = name;
    _translateBody = false;
    _activity = Activity::Storing;
}

void FirmwareModel::beginTranslatedFile(const QByteArray &name)
{
    beginFile(name);
    _translateBody = _record[Field::AdvancedMode] != 0;
}

void FirmwareModel::endFile(const QByteArray &)
{
    if (_activity != Activity::Storing)
        return;
    _activity = Activity::Editing;
    const QByteArray body = std::exchange(_body, {});
    _storage.store(_openFile,
                   _translateBody ? MarkedTranslation::forward(body, _record[Field::ForwardGrade]) : body);
    changed();
}

void FirmwareModel::deleteFile(const QByteArray &name)
{
    if (_storage.remove(name))
        changed();
}

void FirmwareModel::setForwardGrade(const QByteArray &grade)
{
    setGrade(Field::ForwardGrade, grade);
}

void FirmwareModel::setBackwardGrade(const QByteArray &grade)
{
    setGrade(Field::BackwardGrade, grade);
}

void FirmwareModel::setGrade(DeviceStateRecord::Field field, const QByteArray &grade)
{
    bool ok = false;
    const int value = grade.toInt(&ok);
    if (!ok)
        return;
    _record[field] = value;
    changed();
}

void FirmwareModel::beginSound(const QByteArray &)
{
    stopActivity();
    _activity = Activity::Sound;
    _soundHeader.clear();
    _soundData.clear();
    _currentCommand.clear(); // the answer comes after the header
}

void FirmwareModel::takeSoundHeader(QByteArrayView &bytes)
{
    if (_activity != Activity::Sound || _soundHeader.size() == SoundHeaderSize)
        return;
    const qsizetype count = std::min(bytes.size(), SoundHeaderSize - _soundHeader.size());
    _soundHeader += bytes.first(count);
    bytes = bytes.sliced(count);
    if (_soundHeader.size() < SoundHeaderSize)
        return;
    _currentCommand = QByteArrayLiteral("FLASH");
    answer(QByteArray(1, SoundRequest));
}

void FirmwareModel::defaultOz(const QByteArray &)
{
    _defaultLanguage = QByteArrayLiteral("OZ");
}

void FirmwareModel::defaultUsa(const QByteArray &)
{
    _defaultLanguage = QByteArrayLiteral("USA");
}

void FirmwareModel::toggleBoard(const QByteArray &)
{
    toggleActivity(Activity::Board);
}

void FirmwareModel::toggleChat(const QByteArray &)
{
    toggleActivity(Activity::Chat);
}

void FirmwareModel::toggleActivity(Activity activity)
{
    const bool wasOn = _activity == activity;
    stopActivity();
    if (wasOn)
        return;
    _activity = activity;
    if (_activityChanged)
        _activityChanged(activity);
}

void FirmwareModel::echoLines(const QByteArray &text)
{
    for (const char byte : text) {
        _chatLine += byte;
        const bool lineEnds = byte == '\r' || byte == '\n';
        if (!lineEnds && _chatLine.size() < MaximalChatLine)
            continue;
        _currentCommand.clear();
        answer(std::exchange(_chatLine, {}));
    }
}

void FirmwareModel::emboss(const QByteArray &text)
{
    if (_record[Field::EmbosserOutput] == 0) {
        _droppedBytes += text.size();
        return;
    }
    const bool translate =
        _record[Field::AdvancedMode] != 0 && _record[Field::ForwardTranslationForEmbossing] != 0;
    if (translate && !_embosserMarkOpen) {
        appendBounded(_page, MarkedTranslation::forwardOpening(_record[Field::ForwardGrade]));
        _embosserMarkOpen = true;
    }
    appendBounded(_page, text);
    changed();
}

void FirmwareModel::closeEmbosserMark()
{
    if (!_embosserMarkOpen)
        return;
    _embosserMarkOpen = false;
    appendBounded(_page, MarkedTranslation::forwardClosing());
    changed();
}

} // namespace cvtamber
