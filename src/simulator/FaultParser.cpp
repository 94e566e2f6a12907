// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/FaultParser.h"

#include "text/TextCodec.h"

#include <limits>

namespace cvtamber {

namespace {

constexpr int LongestTime = 3600 * 1000; // an hour
constexpr int LongestValue = 512;

// What an entry may say beside its name.
enum Parameter : unsigned {
    Command = 1,
    Number = 2,
    Times = 4,
    Time = 8,
    Size = 16,
    WithError = 32,
    Bytes = 64,
};

struct FaultWord
{
    QString word;
    Fault::Kind kind;
    unsigned parameters;
};

const QList<FaultWord> &faultWords()
{
    using Kind = Fault::Kind;
    static const QList<FaultWord> words{
        {QStringLiteral("noAnswer"), Kind::NoAnswer, Command | Times},
        {QStringLiteral("late"), Kind::LateAnswer, Command | Times | Time},
        {QStringLiteral("reply"), Kind::CustomReply, Command | Times | Bytes},
        {QStringLiteral("noTrailer"), Kind::NoTrailer, Times},
        {QStringLiteral("splitNotifications"), Kind::SplitNotifications, Times | Size},
        {QStringLiteral("mergeNotifications"), Kind::MergeNotifications, Times | Size},
        {QStringLiteral("repeatNotifications"), Kind::RepeatNotifications, Times},
        {QStringLiteral("loseConfirmation"), Kind::LoseConfirmation, Number | Times},
        {QStringLiteral("failWrite"), Kind::FailWrite, Number | Times},
        {QStringLiteral("dropAtWrite"), Kind::DropAtWrite, Number | Times | WithError},
        {QStringLiteral("radioOffAtWrite"), Kind::RadioOffAtWrite, Number | Times | Time},
        {QStringLiteral("daemonRestartAtWrite"), Kind::DaemonRestartAtWrite, Number | Times | Time},
        {QStringLiteral("connectNever"), Kind::ConnectNever, Times},
        {QStringLiteral("connectFails"), Kind::ConnectFails, Times},
        {QStringLiteral("dropAfterConnect"), Kind::DropAfterConnect, Times | WithError},
        {QStringLiteral("dropDuringDiscovery"), Kind::DropDuringDiscovery, Times | WithError},
        {QStringLiteral("servicesNever"), Kind::ServicesNever, Times},
        {QStringLiteral("discoveryFails"), Kind::DiscoveryFails, Times},
        {QStringLiteral("readFails"), Kind::ReadFails, Times},
        {QStringLiteral("notifyFails"), Kind::NotifyFails, Times},
    };
    return words;
}

QStringList allWords()
{
    QStringList words;
    for (const FaultWord &word : faultWords())
        words.append(word.word);
    return words + QStringList{QStringLiteral("missing"), QStringLiteral("leave")};
}

// Text in the device's own codes, or any bytes in base64.
void readBytes(JsonFields &fields, QByteArray &bytes, int language)
{
    QString text;
    fields.text(QStringLiteral("text"), text);
    bytes = TextCodec::encode(text, language).bytes;
    readBase64(fields, QStringLiteral("base64"), bytes);
}

Fault readParameters(JsonFields &fields, const FaultWord &word, int language)
{
    constexpr int most = std::numeric_limits<int>::max();
    Fault fault;
    fault.kind = word.kind;
    QString command;
    if (word.parameters & Command)
        fields.text(QStringLiteral("command"), command);
    fault.command = command.toUtf8();
    if (word.parameters & Number)
        fields.number(QStringLiteral("write"), fault.number, 1, most);
    if (word.parameters & Times)
        fields.number(QStringLiteral("times"), fault.times, 1, most);
    if (word.parameters & Time)
        readMilliseconds(fields, QStringLiteral("ms"), fault.time);
    if (word.parameters & Size) {
        int size = word.kind == Fault::Kind::SplitNotifications ? 1 : LongestValue;
        fields.number(QStringLiteral("size"), size, 1, LongestValue);
        fault.size = size;
    }
    if (word.parameters & WithError)
        fields.boolean(QStringLiteral("withError"), fault.withError);
    if (word.parameters & Bytes) {
        readBytes(fields, fault.bytes, language);
        if (fault.command.isEmpty())
            fields.fail(fields.place(QStringLiteral("command")), QStringLiteral("must be there"));
    }
    return fault;
}

void readMissing(JsonFields &fields, DeviceProfile &device)
{
    using namespace BluetoothIdentifiers;
    static const QList<BluetoothUuid> uuids{deviceService(), genericAccessService(), dataCharacteristic(),
                                            infoCharacteristic(), secondInfoCharacteristic()};
    int index = 0;
    fields.choice(QStringLiteral("what"), index,
                  {QStringLiteral("deviceService"), QStringLiteral("genericAccessService"),
                   QStringLiteral("dataCharacteristic"), QStringLiteral("infoCharacteristic"),
                   QStringLiteral("secondInfoCharacteristic")});
    device.missing.append(uuids[index]);
}

} // namespace

void readMilliseconds(JsonFields &fields, const QString &key, std::chrono::milliseconds &target)
{
    int count = static_cast<int>(target.count());
    fields.number(key, count, 0, LongestTime);
    target = std::chrono::milliseconds(count);
}

void readBase64(JsonFields &fields, const QString &key, QByteArray &target)
{
    QString text;
    fields.text(key, text);
    if (!fields.has(key) || fields.failed())
        return;
    const auto decoded =
        QByteArray::fromBase64Encoding(text.toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    if (decoded)
        target = *decoded;
    else
        fields.fail(fields.place(key), QStringLiteral("must be base64"));
}

void readFault(const QJsonValue &value, const QString &place, DeviceProfile &device, QString &error)
{
    JsonFields fields(value, place, error);
    const QStringList words = allWords();
    int index = -1;
    fields.choice(QStringLiteral("fault"), index, words);
    if (index < 0) {
        fields.fail(fields.place(QStringLiteral("fault")), QStringLiteral("must be there"));
        return;
    }
    if (index < faultWords().size()) {
        device.faults.append(readParameters(fields, faultWords()[index], device.language));
    } else if (words[index] == QStringLiteral("missing")) {
        readMissing(fields, device);
    } else {
        Absence absence;
        QString command;
        fields.text(QStringLiteral("command"), command);
        absence.command = command.toLatin1();
        readMilliseconds(fields, QStringLiteral("after"), absence.after);
        readMilliseconds(fields, QStringLiteral("returnAfter"), absence.duration);
        device.absences.append(absence);
    }
    fields.finish();
}

} // namespace cvtamber
