// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/ProfileParser.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace cvtamber;
using namespace std::chrono_literals;

// One value for each key of a profile.
constexpr char EveryKey[] = R"({
    "radio": {"state": "off", "onAfter": 500, "offAfter": 900},
    "devices": [{
        "name": "Desk", "advertisedName": "", "advertisedServices": ["180D"], "info": "genericAccess",
        "infoText": "x", "serial": "ABCD0001", "model": 4, "firmware": "1.2C345", "languageSet": "G",
        "languageSwitch": 4, "language": 4, "linkCode": 34, "linkReply": "doubled",
        "state": {"0": 3, "28": 1},
        "files": [{"name": "R\u00c9SUM\u00c9", "text": "\u00e9\u0152"}, {"name": "B", "base64": "AP8="}],
        "storageLimit": 4096, "sizes": "frenchBraille", "persistent": false, "maximalNotification": 100,
        "delays": {"connect": 1, "discover": 2, "read": 3, "write": 4, "reply": 5, "notification": 6,
                   "advertising": 7},
        "chat": [{"say": ["\u00e9"]}, {"when": "*", "say": ["a", "b"], "after": 20}],
        "board": [{"when": "dog", "say": ["cat\n"]}],
        "faults": [{"fault": "reply", "command": "PCR", "text": "\u00e9", "times": 2},
                   {"fault": "dropAtWrite", "write": 3, "withError": false},
                   {"fault": "mergeNotifications", "size": 64},
                   {"fault": "late", "ms": 2500},
                   {"fault": "missing", "what": "dataCharacteristic"},
                   {"fault": "leave", "after": 100, "returnAfter": 200}]
    }]})";

class tst_profile : public QObject
{
    Q_OBJECT

private slots:
    void errors_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        const auto row = [](const char *json, const char *error) {
            QTest::newRow(json) << QByteArray(json) << QString::fromLatin1(error);
        };
        row("", "not valid JSON at byte 0: illegal value.");
        row("{\"name\": }", "not valid JSON at byte 10: object is missing after a comma.");
        row("[]", "the profile: must be an object.");
        row("{\"nmae\": \"x\"}", "nmae: is not a known key.");
        row("{\"a\\u001b[1m\": 1}", "a\\x1b[1m: is not a known key.");
        row("{\"devices\": 3}", "devices: must be a list.");
        row("{\"devices\": [], \"serial\": \"12345678\"}", "serial: is not a known key.");
        row("{\"devices\": [{}, {\"serial\": 7}]}", "devices[1].serial: must be a text in quotation marks.");
        row("{\"devices\": [{}, {}]}", "devices[1].serial: is the serial number of another device too.");
        row("{\"serial\": \"1234567\"}", "serial: must be 8 ASCII characters.");
        row("{\"firmware\": \"2.1\\u00c4004\"}", "firmware: must be 7 ASCII characters.");
        row("{\"model\": 5}", "model: must be a whole number from 1 to 4.");
        row("{\"linkCode\": 256}", "linkCode: must be a whole number from 0 to 255.");
        row("{\"language\": 1.5}", "language: must be a whole number from 0 to 27.");
        row("{\"language\": 1e300}", "language: must be a whole number from 0 to 27.");
        row("{\"language\": \"2\"}", "language: must be a whole number from 0 to 27.");
        row("{\"persistent\": 1}", "persistent: must be true or false.");
        row("{\"linkReply\": \"big\"}", "linkReply: must be one of upper, lower, doubled.");
        row("{\"state\": {\"30\": 1}}", "state.30: is not a known key.");
        row("{\"state\": {\"3\": null}}", "state.3: must be a whole number from -2147483648 to 2147483647.");
        row("{\"delays\": {\"write\": -1}}", "delays.write: must be a whole number from 0 to 3600000.");
        row("{\"advertisedServices\": [\"180G\"]}",
            "advertisedServices[0]: must be a Bluetooth identifier of 4 or 32 hexadecimal digits.");
        row("{\"files\": [{\"text\": \"x\"}]}", "files[0].name: must be there and not be empty.");
        row("{\"files\": [{\"name\": \"x\"}]}", "files[0]: must have either text or base64.");
        row("{\"files\": [{\"name\": \"x\", \"base64\": \"%\"}]}", "files[0].base64: must be base64.");
        row("{\"radio\": {\"state\": \"broken\"}}",
            "radio.state: must be one of on, off, unsupported, unauthorized.");
        row(R"({"chat": [{"when": "x"}]})", "chat[0].say: must be there and not be empty.");
        row(R"({"chat": [{"when": "", "say": ["x"]}]})", "chat[0].when: must not be empty.");
        row(R"({"chat": [{"say": "x"}]})", "chat[0].say: must be a list.");
        row(R"({"chat": [{"say": [1]}]})", "chat[0].say[0]: must be a text in quotation marks.");
        row(R"({"chat": [{"say": ["a", "b\nc"]}]})", "chat[0].say[1]: must be one line.");
        row(R"({"language": 15, "board": [{"say": ["\u4f60"]}]})",
            "board[0].say[0]: has characters that a device of its language cannot type.");
        row(R"({"board": [{"say": ["x"], "after": 1.5}]})",
            "board[0].after: must be a whole number from 0 to 3600000.");
        row("{\"faults\": [7]}", "faults[0]: must be an object.");
        row("{\"faults\": [{}]}", "faults[0].fault: must be there.");
        row("{\"faults\": [{\"fault\": \"noAnswer\", \"write\": 1}]}",
            "faults[0].write: is not a known key.");
        row("{\"faults\": [{\"fault\": \"noAnswer\", \"times\": 0}]}",
            "faults[0].times: must be a whole number from 1 to 2147483647.");
        row("{\"faults\": [{\"fault\": \"reply\", \"text\": \"x\"}]}", "faults[0].command: must be there.");
    }
    void errors()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        QCOMPARE(parseProfile(json).error, error);
    }

    // Broken anywhere, the parser tells an error or reads a profile, and does not crash.
    void brokenAnywhere()
    {
        const QByteArray good =
            "{\"devices\":[{\"serial\":\"12345678\",\"state\":{\"8\":4},\"files\":[{\"name\":"
            "\"A\",\"text\":\"x\"}],\"faults\":[{\"fault\":\"late\",\"ms\":5}]}]}";
        QCOMPARE(parseProfile(good).error, QString());
        for (qsizetype i = 0; i < good.size(); ++i) {
            QVERIFY(!parseProfile(good.left(i)).error.isEmpty());
            QByteArray broken = good;
            broken[i] = '\xff';
            QVERIFY2(!parseProfile(broken).error.isEmpty() || good.at(i) == 'x' || good.at(i) == 'A',
                     broken.constData());
        }
        QVERIFY(!parseProfile(QByteArray(100000, '[')).error.isEmpty());
    }

    void everyKey()
    {
        const ProfileResult result = parseProfile(EveryKey);
        QCOMPARE(result.error, QString());
        QCOMPARE(result.profiles.radio.state, BluetoothCentral::State::PoweredOff);
        QCOMPARE(result.profiles.radio.onAfter.count(), 500);
        QCOMPARE(result.profiles.radio.offAfter.count(), 900);
        QCOMPARE(result.profiles.devices.size(), 1);
        const DeviceProfile &device = result.profiles.devices[0];
        QCOMPARE(device.name, QStringLiteral("Desk"));
        QVERIFY(device.advertisedName.isNull());
        QVERIFY(device.advertisedServices == QList{BluetoothUuid(QStringLiteral("0x180D"))});
        QVERIFY(device.info == InfoPlace::GenericAccessService && device.infoText == QStringLiteral("x"));
        QCOMPARE(device.serial + ' ' + device.firmware, QByteArray("ABCD0001 1.2G345"));
        QCOMPARE((QList{device.model, device.languageSwitch, device.language, device.linkCode}),
                 (QList{4, 4, 4, 34}));
        QVERIFY(device.linkReply == LinkReplyForm::Doubled && device.sizes == SizeStyle::FrenchBraille);
        QCOMPARE(device.stateFields, (QMap<int, int>{{0, 3}, {28, 1}}));
        // In the device's own codes: E with acute is 144, e with acute 130, the capital OE 159 in French.
        QCOMPARE(device.files[0].name, QByteArray("R\x90SUM\x90"));
        QCOMPARE(device.files[0].bytes, QByteArray("\x82\x9f"));
        QCOMPARE(device.files[1].bytes, QByteArray("\0\xff", 2));
        QVERIFY(device.storageLimit == 4096 && !device.persistent && device.maximalNotification == 100);
        QVERIFY(device.delays.connect == 1ms && device.delays.discover == 2ms && device.delays.read == 3ms &&
                device.delays.write == 4ms && device.delays.reply == 5ms &&
                device.delays.notification == 6ms && device.delays.advertising == 7ms);
        QVERIFY(device.chat[0].when.isNull() && device.chat[0].say == QList<QByteArray>{"\x82\r\n"} &&
                device.chat[0].after == 1s && device.chat[1].when == QStringLiteral("*") &&
                (device.chat[1].say == QList<QByteArray>{"a\r\n", "b\r\n"}) && device.chat[1].after == 20ms);
        QVERIFY(device.board[0].say == QList<QByteArray>{"cat\r\n"});
        QCOMPARE(device.faults.size(), 4);
        QVERIFY(device.faults[0].command == "PCR" && device.faults[0].bytes == "\x82" &&
                device.faults[0].times == 2);
        QVERIFY(device.faults[1].number == 3 && !device.faults[1].withError &&
                device.faults[1].times == Fault::Always);
        QVERIFY(device.faults[2].size == 64 && device.faults[3].time == 2500ms);
        QVERIFY(device.missing == QList{BluetoothIdentifiers::dataCharacteristic()});
        QVERIFY(device.absences.size() == 1 && device.absences[0].duration == 200ms);
    }

    void readsFiles()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("none.json"));
        QVERIFY(readProfileFile(path).error.startsWith(path + QStringLiteral(": cannot be read: ")));
        QVERIFY(!readProfileFile(folder.path()).error.isEmpty());
    }

    void examplesAreGood()
    {
        const QDir folder(QStringLiteral(CVTAMBER_PROFILES));
        const QStringList names = folder.entryList({QStringLiteral("*.json")});
        QVERIFY(!names.isEmpty());
        for (const QString &name : names)
            QCOMPARE(readProfileFile(folder.filePath(name)).error, QString());
    }
};

QTEST_APPLESS_MAIN(tst_profile)
#include "tst_profile.moc"
