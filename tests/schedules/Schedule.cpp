// SPDX-License-Identifier: GPL-3.0-or-later
#include "schedules/Schedule.h"

#include "schedules/Dice.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

constexpr int BytesInWrite = 20;
// Before and after what an operation itself writes.
constexpr int OtherWrites = 16;
// Finding and identifying the device.
constexpr int TimeBefore = 14000;

QString randomText(Dice &dice, int size)
{
    static constexpr char16_t Characters[] = u"abcdefghijklmnopqrstuvwxyz ABC 0123456789.,\n\u00E9";
    QString text;
    for (int i = 0; i < size; ++i)
        text += Characters[dice.below(int{std::size(Characters)} - 1)];
    return text;
}

QByteArray randomBytes(Dice &dice, int size)
{
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(dice.below(256));
    return bytes;
}

// Many short ones, some that fill many writes.
int randomSize(Dice &dice)
{
    switch (dice.below(4)) {
    case 0:
        return dice.below(20);
    case 1:
        return dice.below(20000);
    default:
        return dice.below(2000);
    }
}

QJsonObject fault(QLatin1StringView word, QJsonObject more = {})
{
    more.insert(u"fault"_s, word);
    return more;
}

QJsonObject writeFault(Trouble trouble, int write)
{
    const QJsonObject at{{u"write"_s, write}};
    switch (trouble) {
    case Trouble::LinkLost:
        return fault("dropAtWrite"_L1, at);
    case Trouble::LinkLostSilently:
        return fault("dropAtWrite"_L1, {{u"write"_s, write}, {u"withError"_s, false}});
    case Trouble::LostConfirmation:
        return fault("loseConfirmation"_L1, at);
    default:
        return fault("failWrite"_L1, at);
    }
}

// The faults that a trouble stands for.
QJsonArray randomFaults(Dice &dice, Schedule &schedule)
{
    const auto command = dice.pick({"PC S2 ON", "PCR", "VER1", "DIR", "PR"});
    const QJsonObject ofCommand{{u"command"_s, QLatin1StringView(command)}};
    const QJsonObject fewTimes{{u"times"_s, 1 + dice.below(3)}};
    QJsonObject object;
    switch (schedule.trouble) {
    case Trouble::LinkLost:
    case Trouble::LinkLostSilently:
    case Trouble::LostConfirmation:
    case Trouble::FailedWrite:
        return {writeFault(schedule.trouble, schedule.write)};
    case Trouble::LateAnswer:
        object = ofCommand;
        object[u"ms"_s] = dice.oneIn(2) ? dice.below(1900) : dice.below(40000);
        return {fault("late"_L1, object)};
    case Trouble::RepeatedNotifications:
        return {fault("repeatNotifications"_L1, dice.oneIn(2) ? QJsonObject{} : fewTimes)};
    case Trouble::SplitNotifications:
        return {fault("splitNotifications"_L1, {{u"size"_s, 1 + dice.below(5)}})};
    case Trouble::MergedNotifications:
        return {fault("mergeNotifications"_L1, {{u"size"_s, 21 + dice.below(492)}})};
    case Trouble::MissingService:
        return {fault("missing"_L1,
                      {{u"what"_s, QLatin1StringView(dice.pick(
                                       {"deviceService", "dataCharacteristic", "infoCharacteristic"}))}})};
    case Trouble::ServicesNever:
        return {fault(QLatin1StringView(dice.pick({"servicesNever", "discoveryFails"})), fewTimes)};
    case Trouble::ConnectTrouble:
        return {fault(QLatin1StringView(dice.pick(
                          {"connectNever", "connectFails", "dropAfterConnect", "dropDuringDiscovery"})),
                      fewTimes)};
    case Trouble::RefusedNotifications:
        return {fault(QLatin1StringView(dice.pick({"notifyFails", "readFails"})))};
    case Trouble::DeviceLeaves:
        object[u"after"_s] = static_cast<int>(schedule.after.count());
        if (schedule.isOver)
            object[u"returnAfter"_s] = 1 + dice.below(20000);
        return {fault("leave"_L1, object)};
    case Trouble::GarbageReply:
        object = ofCommand;
        object[u"base64"_s] = QString::fromLatin1(randomBytes(dice, 1 + dice.below(600)).toBase64());
        return {fault("reply"_L1, object)};
    case Trouble::NoAnswer:
        return {fault("noAnswer"_L1, ofCommand)};
    case Trouble::NoTrailer:
        return {fault("noTrailer"_L1)};
    case Trouble::None:
    case Trouble::RadioOff:
        break;
    }
    return {};
}

QJsonObject radioOf(Dice &dice, const Schedule &schedule)
{
    if (schedule.trouble != Trouble::RadioOff)
        return {};
    const int after = static_cast<int>(schedule.after.count());
    QJsonObject radio{{u"offAfter"_s, after}};
    if (schedule.isOver)
        radio[u"onAfter"_s] = after + 1 + dice.below(20000);
    return radio;
}

void setCommand(Schedule &schedule)
{
    const QStringList put{u"put"_s, u"-"_s, u"--as"_s, u"NEW.TXT"_s};
    const QStringList emboss{u"emboss"_s, u"-"_s};
    const QStringList get{u"get"_s, u"A.TXT"_s};
    switch (schedule.operation) {
    case Operation::InfoAndList:
        schedule.arguments = QStringList{u"batch"_s};
        schedule.input = {"info\nls\n"};
        return;
    case Operation::Put:
        schedule.arguments = put;
        break;
    case Operation::PutTranslated:
        schedule.arguments = put + QStringList{u"--translate"_s};
        break;
    case Operation::Get:
        schedule.arguments = get;
        return;
    case Operation::GetBackTranslated:
        schedule.arguments = get + QStringList{u"--back-translate"_s};
        return;
    case Operation::Emboss:
        schedule.arguments = emboss;
        break;
    case Operation::EmbossTranslated:
        schedule.arguments = emboss + QStringList{u"--translate"_s};
        break;
    case Operation::Remove:
        schedule.arguments = QStringList{u"rm"_s, u"A.TXT"_s};
        return;
    case Operation::Chat:
        schedule.arguments = QStringList{u"chat"_s};
        break;
    }
    // An empty block is the end of input, which comes by itself.
    if (!schedule.text.isEmpty())
        schedule.input = {schedule.text.toUtf8()};
}

QByteArray profileOf(const Schedule &schedule, const QJsonArray &faults, const QJsonObject &radio)
{
    const QJsonObject file{{u"name"_s, u"A.TXT"_s},
                           {u"base64"_s, QString::fromLatin1(schedule.stored.toBase64())}};
    const QJsonObject device{{u"serial"_s, u"10000001"_s},
                             {u"name"_s, u"Desk"_s},
                             {u"persistent"_s, false},
                             {u"files"_s, QJsonArray{file}},
                             {u"faults"_s, faults}};
    return QJsonDocument(QJsonObject{{u"radio"_s, radio}, {u"devices"_s, QJsonArray{device}}})
        .toJson(QJsonDocument::Compact);
}

QByteArray storedText(Dice &dice, int size)
{
    return randomText(dice, size).replace(u'\u00E9', u'e').toLatin1();
}

} // namespace

Schedule Schedule::fromSeed(quint32 seed)
{
    Dice dice(seed);
    Schedule schedule;
    schedule.seed = seed;
    schedule.operation = static_cast<Operation>(dice.below(OperationCount));
    schedule.trouble = static_cast<Trouble>(dice.below(TroubleCount));
    const int size = randomSize(dice);
    // What is typed in a chat is short.
    schedule.text = randomText(dice, schedule.operation == Operation::Chat ? size % 500 : size);
    schedule.stored = storedText(dice, randomSize(dice));
    const int writes = static_cast<int>(schedule.text.size()) / BytesInWrite + OtherWrites;
    schedule.write = 1 + dice.below(writes);
    schedule.after = std::chrono::milliseconds(dice.below(TimeBefore + writes * 10));
    schedule.isOver = dice.oneIn(2);
    setCommand(schedule);
    if (dice.oneIn(2))
        schedule.arguments = QStringList{u"--device"_s, u"10000001"_s} + schedule.arguments;
    const QJsonArray faults = randomFaults(dice, schedule);
    schedule.profile = profileOf(schedule, faults, radioOf(dice, schedule));
    return schedule;
}

Schedule Schedule::atWrite(Operation operation, Trouble trouble, int write)
{
    Dice dice(static_cast<quint32>(write));
    Schedule schedule;
    schedule.operation = operation;
    schedule.trouble = trouble;
    schedule.write = write;
    schedule.text = randomText(dice, operation == Operation::Chat ? 100 : 30 * BytesInWrite);
    schedule.stored = storedText(dice, 100);
    setCommand(schedule);
    schedule.profile = profileOf(schedule, {writeFault(trouble, write)}, {});
    return schedule;
}

QString Schedule::description() const
{
    return u"%1%2, %3 (write %4, after %5 ms%6), text of %7, file of %8"_s.arg(
        seed == 0 ? QString() : u"seed %1: "_s.arg(seed), name(operation), name(trouble),
        QString::number(write), QString::number(after.count()), isOver ? u", passing"_s : QString(),
        QString::number(text.size()), QString::number(stored.size()));
}

QString Schedule::name(Operation operation)
{
    static constexpr const char *Names[] = {"info and ls",
                                            "put",
                                            "put --translate",
                                            "get",
                                            "get --back-translate",
                                            "emboss",
                                            "emboss --translate",
                                            "rm",
                                            "chat"};
    static_assert(std::size(Names) == OperationCount);
    return QLatin1StringView(Names[static_cast<int>(operation)]);
}

QString Schedule::name(Trouble trouble)
{
    static constexpr const char *Names[] = {
        "nothing",        "link lost",       "link lost silently", "lost confirmation", "failed write",
        "late answer",    "repeated pieces", "split pieces",       "merged pieces",     "missing service",
        "services never", "connect trouble", "refused notify",     "radio off",         "device leaves",
        "garbage reply",  "no answer",       "no trailer"};
    static_assert(std::size(Names) == TroubleCount);
    return QLatin1StringView(Names[static_cast<int>(trouble)]);
}

bool Schedule::distortsReplies() const
{
    return trouble == Trouble::LateAnswer || trouble == Trouble::RepeatedNotifications ||
           trouble == Trouble::GarbageReply || trouble == Trouble::NoAnswer;
}

} // namespace cvtamber
