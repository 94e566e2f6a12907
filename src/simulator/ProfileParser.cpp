// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/ProfileParser.h"

#include "device/DeviceStateRecord.h"
#include "simulator/FaultParser.h"
#include "simulator/JsonFields.h"
#include "text/DeviceTables.h"
#include "text/TextCodec.h"

#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

namespace cvtamber {

namespace {

constexpr qint64 MaximalProfileSize = 64LL * 1024 * 1024;
constexpr int MaximalStorage = 64 * 1024 * 1024;
constexpr int LargestSwitch = 9; // told as one digit
constexpr qsizetype VersionLength = 7;
constexpr qsizetype LanguageSetPosition = 3;
constexpr qsizetype SerialLength = 8;

void readDelays(JsonFields &fields, DeviceDelays &delays)
{
    readMilliseconds(fields, QStringLiteral("connect"), delays.connect);
    readMilliseconds(fields, QStringLiteral("discover"), delays.discover);
    readMilliseconds(fields, QStringLiteral("read"), delays.read);
    readMilliseconds(fields, QStringLiteral("write"), delays.write);
    readMilliseconds(fields, QStringLiteral("reply"), delays.reply);
    readMilliseconds(fields, QStringLiteral("notification"), delays.notification);
    readMilliseconds(fields, QStringLiteral("advertising"), delays.advertising);
}

void readAddress(JsonFields &fields, QString &address)
{
    static const QRegularExpression form(QStringLiteral("^([0-9A-F]{2}:){5}[0-9A-F]{2}$"));
    fields.text(QStringLiteral("address"), address);
    address = address.toUpper();
    if (!address.isNull() && !form.match(address).hasMatch())
        fields.fail(fields.place(QStringLiteral("address")),
                    QStringLiteral("must be six pairs of hexadecimal digits with colons"));
}

void readAir(JsonFields &fields, DeviceProfile &device)
{
    fields.text(QStringLiteral("name"), device.name);
    device.advertisedName = device.name;
    fields.text(QStringLiteral("advertisedName"), device.advertisedName);
    if (device.advertisedName.isEmpty())
        device.advertisedName = QString();
    if (fields.has(QStringLiteral("advertisedServices")))
        device.advertisedServices.clear();
    fields.list(QStringLiteral("advertisedServices"), [&](const QJsonValue &value, const QString &place) {
        const BluetoothUuid uuid(value.toString());
        if (uuid.isNull())
            fields.fail(place,
                        QStringLiteral("must be a Bluetooth identifier of 4 or 32 hexadecimal digits"));
        device.advertisedServices.append(uuid);
    });
    readAddress(fields, device.address);
    fields.boolean(QStringLiteral("remembered"), device.remembered);
    int info = static_cast<int>(device.info);
    fields.choice(QStringLiteral("info"), info,
                  {QStringLiteral("device"), QStringLiteral("genericAccess"), QStringLiteral("none")});
    device.info = static_cast<InfoPlace>(info);
    fields.text(QStringLiteral("infoText"), device.infoText);
    fields.number(QStringLiteral("maximalNotification"), device.maximalNotification, 1, MaximalValue);
    fields.object(QStringLiteral("delays"), [&](JsonFields &delays) { readDelays(delays, device.delays); });
}

void readIdentity(JsonFields &fields, DeviceProfile &device)
{
    fields.ascii(QStringLiteral("serial"), device.serial, SerialLength);
    fields.number(QStringLiteral("model"), device.model, 1, ModelCount - 1);
    fields.ascii(QStringLiteral("firmware"), device.firmware, VersionLength);
    QByteArray set;
    fields.ascii(QStringLiteral("languageSet"), set, 1);
    if (!set.isEmpty())
        device.firmware[LanguageSetPosition] = set[0];
    fields.number(QStringLiteral("languageSwitch"), device.languageSwitch, 0, LargestSwitch);
    fields.number(QStringLiteral("language"), device.language, 0, DeviceLanguage::Count - 1);
    fields.number(QStringLiteral("linkCode"), device.linkCode, 0, 255);
    int form = static_cast<int>(device.linkReply);
    fields.choice(QStringLiteral("linkReply"), form,
                  {QStringLiteral("upper"), QStringLiteral("lower"), QStringLiteral("doubled")});
    device.linkReply = static_cast<LinkReplyForm>(form);
    fields.object(QStringLiteral("state"), [&](JsonFields &state) {
        for (int field = 0; field < DeviceStateRecord::FieldCount; ++field) {
            const QString key = QString::number(field);
            if (!state.has(key))
                continue;
            constexpr auto limits = std::numeric_limits<int>();
            state.number(key, device.stateFields[field], limits.min(), limits.max());
        }
    });
}

SimulatedFile readFile(const QJsonValue &value, const QString &place, int language, QString &error)
{
    JsonFields fields(value, place, error);
    QString name;
    QString text;
    SimulatedFile file;
    fields.text(QStringLiteral("name"), name);
    if (name.isEmpty())
        fields.fail(fields.place(QStringLiteral("name")), QStringLiteral("must be there and not be empty"));
    if (fields.has(QStringLiteral("text")) == fields.has(QStringLiteral("base64")))
        fields.fail(place, QStringLiteral("must have either text or base64"));
    fields.text(QStringLiteral("text"), text);
    file.name = TextCodec::encode(name, language).bytes;
    file.bytes = TextCodec::encode(text, language).bytes;
    readBase64(fields, QStringLiteral("base64"), file.bytes);
    fields.finish();
    return file;
}

void readFiles(JsonFields &fields, DeviceProfile &device, QString &error)
{
    fields.list(QStringLiteral("files"), [&](const QJsonValue &value, const QString &place) {
        device.files.append(readFile(value, place, device.language, error));
    });
    int limit = static_cast<int>(device.storageLimit);
    fields.number(QStringLiteral("storageLimit"), limit, 0, MaximalStorage);
    device.storageLimit = limit;
    int sizes = static_cast<int>(device.sizes);
    fields.choice(QStringLiteral("sizes"), sizes,
                  {QStringLiteral("decimal"), QStringLiteral("braille"), QStringLiteral("frenchBraille")});
    device.sizes = static_cast<SizeStyle>(sizes);
    fields.boolean(QStringLiteral("persistent"), device.persistent);
}

QByteArray readSaid(JsonFields &answer, const QJsonValue &value, const QString &place, int language,
                    bool isLine)
{
    QString text = value.toString();
    if (!value.isString())
        answer.fail(place, QStringLiteral("must be a text in quotation marks"));
    else if (isLine && (text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'))))
        answer.fail(place, QStringLiteral("must be one line"));
    else if (isLine)
        text += QStringLiteral("\r\n");
    else
        text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    const EncodedText encoded = TextCodec::encode(text, language);
    if (encoded.replaced > 0)
        answer.fail(place, QStringLiteral("has characters that a device of its language cannot type"));
    return encoded.bytes;
}

// What the person at the device answers, in chat line by line, on the whiteboard word by word.
QList<PartnerAnswer> readPartner(JsonFields &fields, const QString &key, int language, QString &error)
{
    const bool isLine = key == QStringLiteral("chat");
    QList<PartnerAnswer> answers;
    fields.list(key, [&](const QJsonValue &value, const QString &place) {
        JsonFields answer(value, place, error);
        PartnerAnswer read;
        answer.text(QStringLiteral("when"), read.when);
        if (answer.has(QStringLiteral("when")) && read.when.isEmpty())
            answer.fail(answer.place(QStringLiteral("when")), QStringLiteral("must not be empty"));
        answer.list(QStringLiteral("say"), [&](const QJsonValue &said, const QString &saidPlace) {
            read.say.append(readSaid(answer, said, saidPlace, language, isLine));
        });
        if (read.say.isEmpty())
            answer.fail(answer.place(QStringLiteral("say")),
                        QStringLiteral("must be there and not be empty"));
        readMilliseconds(answer, QStringLiteral("after"), read.after);
        answer.finish();
        answers.append(read);
    });
    return answers;
}

DeviceProfile readDevice(JsonFields &fields, QString &error)
{
    DeviceProfile device;
    readAir(fields, device);
    readIdentity(fields, device);
    readFiles(fields, device, error);
    device.chat = readPartner(fields, QStringLiteral("chat"), device.language, error);
    device.board = readPartner(fields, QStringLiteral("board"), device.language, error);
    fields.list(QStringLiteral("faults"), [&](const QJsonValue &value, const QString &place) {
        readFault(value, place, device, error);
    });
    return device;
}

void readRadio(JsonFields &fields, RadioProfile &radio)
{
    using State = BluetoothCentral::State;
    static const QList<State> states{State::PoweredOn, State::PoweredOff, State::Unsupported,
                                     State::Unauthorized};
    int state = 0;
    fields.choice(QStringLiteral("state"), state,
                  {QStringLiteral("on"), QStringLiteral("off"), QStringLiteral("unsupported"),
                   QStringLiteral("unauthorized")});
    radio.state = states[state];
    readMilliseconds(fields, QStringLiteral("onAfter"), radio.onAfter);
    readMilliseconds(fields, QStringLiteral("offAfter"), radio.offAfter);
}

void readDaemon(JsonFields &fields, DaemonProfile &daemon)
{
    readMilliseconds(fields, QStringLiteral("restartsAfter"), daemon.restartsAfter);
    readMilliseconds(fields, QStringLiteral("restartTakes"), daemon.restartTakes);
    readMilliseconds(fields, QStringLiteral("forgetsAfter"), daemon.forgetsAfter);
    readMilliseconds(fields, QStringLiteral("connectTimeout"), daemon.connectTimeout);
    readMilliseconds(fields, QStringLiteral("answerTimeout"), daemon.answerTimeout);
    fields.boolean(QStringLiteral("keepsServices"), daemon.keepsServices);
    fields.boolean(QStringLiteral("linksEndWithClients"), daemon.linksEndWithClients);
}

void readDevices(JsonFields &fields, DeviceProfileSet &set, QString &error)
{
    fields.list(QStringLiteral("devices"), [&](const QJsonValue &value, const QString &place) {
        JsonFields device(value, place, error);
        set.devices.append(readDevice(device, error));
        device.finish();
        for (qsizetype i = 0; i + 1 < set.devices.size(); ++i) {
            if (set.devices[i].serial == set.devices.constLast().serial)
                device.fail(device.place(QStringLiteral("serial")),
                            QStringLiteral("is the serial number of another device too"));
        }
    });
}

} // namespace

ProfileResult parseProfile(const QByteArray &json)
{
    QJsonParseError syntax;
    const QJsonDocument document = QJsonDocument::fromJson(json, &syntax);
    if (syntax.error != QJsonParseError::NoError)
        return {
            {},
            QStringLiteral("not valid JSON at byte %1: %2.").arg(syntax.offset).arg(syntax.errorString())};

    ProfileResult result;
    const QJsonValue root = document.isObject() ? QJsonValue(document.object()) : QJsonValue();
    JsonFields fields(root, {}, result.error);
    fields.object(QStringLiteral("radio"),
                  [&](JsonFields &radio) { readRadio(radio, result.profiles.radio); });
    fields.object(QStringLiteral("daemon"),
                  [&](JsonFields &daemon) { readDaemon(daemon, result.profiles.daemon); });
    // A profile of one device may have that device's keys at the top.
    if (fields.has(QStringLiteral("devices")))
        readDevices(fields, result.profiles, result.error);
    else
        result.profiles.devices.append(readDevice(fields, result.error));
    fields.finish();
    return result;
}

ProfileResult readProfileFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, QStringLiteral("%1: cannot be read: %2.").arg(path, file.errorString())};
    const QByteArray json = file.read(MaximalProfileSize + 1);
    if (json.size() > MaximalProfileSize)
        return {{}, QStringLiteral("%1: is too large for a profile.").arg(path)};
    ProfileResult result = parseProfile(json);
    if (!result.error.isEmpty())
        result.error.prepend(path + QStringLiteral(": "));
    return result;
}

} // namespace cvtamber
