// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EventRunLoop.h"
#include "base/PathBytes.h"
#include "platform/desktop/ChosenFolderContainer.h"
#include "platform/desktop/DesktopApplication.h"
#include "platform/desktop/DesktopFileChooser.h"
#include "platform/desktop/DesktopMail.h"
#include "platform/desktop/DesktopPreview.h"
#include "platform/desktop/FileUris.h"
#include "platform/desktop/PortalRequest.h"
#include "simulator_bluez/PrivateBus.h"
#include "support/ManualRunLoop.h"
#include "support/ManualTaskRunner.h"
#include "support/MemoryDefaults.h"
#include "support/RecordingLog.h"
#include "support/Rows.h"
#include "support/TemporaryLocations.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QDir>
#include <QThread>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Identifier = u"org.cvtamber.Test"_s;

// A desktop portal that notes what it is asked and answers as it is told.
class FakePortal final : public QDBusVirtualObject
{
public:
    enum class Reply { Refuse, Answer, StaySilent };

    explicit FakePortal(const QDBusConnection &bus)
        : _bus(bus)
    {
        _bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this);
        _bus.registerService(PortalRequest::service());
    }
    ~FakePortal() override { leave(); }
    void leave()
    {
        _bus.unregisterService(PortalRequest::service());
        _bus.unregisterObject(u"/org/freedesktop/portal/desktop"_s);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        called = message.interface() % u'.' % message.member();
        options = qdbus_cast<QVariantMap>(message.arguments().last());
        readDescriptors();
        if (reply == Reply::Refuse)
            return _bus.send(message.createErrorReply(QDBusError::Failed, u"no"_s));
        const QString handle = u"/org/freedesktop/portal/desktop/request/"_s %
                               message.service().mid(1).replace(u'.', u'_') % u'/' %
                               options.value(u"handle_token"_s).toString();
        _bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
        if (reply == Reply::StaySilent)
            return true;
        QDBusMessage signal =
            QDBusMessage::createSignal(handle, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        signal << response << results;
        return _bus.send(signal);
    }

    Reply reply = Reply::Answer;
    uint response = 0;
    QVariantMap results;
    QString called;
    QVariantMap options;
    QByteArray attachment;

private:
    void readDescriptors()
    {
        const QVariant descriptors = options.value(u"attachment_fds"_s);
        if (!descriptors.isValid())
            return;
        for (const auto &descriptor : qdbus_cast<QList<QDBusUnixFileDescriptor>>(descriptors)) {
            QFile file;
            if (file.open(descriptor.fileDescriptor(), QIODevice::ReadOnly))
                attachment = file.readAll();
        }
    }

    QDBusConnection _bus;
};

struct Heard
{
    DesktopApplication::Handlers handlers()
    {
        return {[this](const QString &token) { events.append(u"activate "_s % token); },
                [this](const QStringList &paths, const QStringList &others) {
                    events.append(u"open "_s % paths.join(u'|') % u" and "_s % others.join(u'|'));
                },
                [this](const QString &name) { events.append(u"action "_s % name); }};
    }
    QStringList events;
};

} // namespace

class tst_desktop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        _address = _bus.start();
        QVERIFY2(!_address.isNull(), "dbus-daemon is needed");
        _path = qgetenv("PATH");
    }
    void init()
    {
        // None of the desktop's own programs.
        _programs = std::make_unique<QTemporaryDir>();
        qputenv("PATH", QFile::encodeName(_programs->path()));
    }
    void cleanupTestCase() { qputenv("PATH", _path); }

    void filesAndTheirUris_data()
    {
        columns<QByteArray, QString>("path", "uri");
        row("plain", "/home/ann/a.txt"_ba, u"file:///home/ann/a.txt"_s);
        row("blank, percent, hash", "/a b%20#?.txt"_ba, u"file:///a%20b%2520%23%3F.txt"_s);
        row("letters", "/ź"_ba, u"file:///%C5%BA"_s);
        row("not UTF-8", "/caf\xE9"_ba, u"file:///caf%E9"_s);
    }
    void filesAndTheirUris()
    {
        QFETCH(QByteArray, path);
        QFETCH(QString, uri);
        QCOMPARE(fileUriOfPath(pathOfBytes(path)), uri);
        QCOMPARE(bytesOfPath(pathOfFileUri(uri)), path);
    }
    void whatIsNoFileOfThisComputer()
    {
        for (const QString &uri : {u"https://example.org/a"_s, u"file://other/a"_s, u"a.txt"_s, u""_s,
                                   u"file:///a%00b"_s, u"smb://host/a"_s})
            QVERIFY2(pathOfFileUri(uri).isNull(), qPrintable(uri));
        QCOMPARE(pathOfFileUri(u"file://localhost/a"_s), u"/a"_s);
    }

    void aSecondStartHandsOver_data()
    {
        columns<QStringList, QStringList>("files", "events");
        row("files", QStringList{u"/a b.txt"_s, u"/ź.txt"_s},
            QStringList{u"open /a b.txt|/ź.txt and "_s, u"activate token"_s});
        row("no files", QStringList(), QStringList{u"activate token"_s});
    }
    void aSecondStartHandsOver()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, events);
        DesktopApplication first(connection(), Identifier);
        QCOMPARE(first.start({u"/own.txt"_s}), DesktopApplication::Start::First);
        Heard heard;
        first.setHandlers(heard.handlers());
        qputenv("XDG_ACTIVATION_TOKEN", "token");
        QCOMPARE(startElsewhere(files), DesktopApplication::Start::HandedOver);
        qunsetenv("XDG_ACTIVATION_TOKEN");
        QCOMPARE(heard.events, events);
    }

    void aRequestBeforeTheProgramIsReadyWaits()
    {
        DesktopApplication first(connection(), Identifier);
        QCOMPARE(first.start({}), DesktopApplication::Start::First);
        QCOMPARE(startElsewhere({u"/early.txt"_s}), DesktopApplication::Start::HandedOver);
        Heard heard;
        first.setHandlers(heard.handlers());
        QCOMPARE(heard.events.value(0), u"open /early.txt and "_s);
    }

    void theDesktopsOwnCalls()
    {
        DesktopApplication first(connection(), Identifier);
        QCOMPARE(first.start({}), DesktopApplication::Start::First);
        Heard heard;
        first.setHandlers(heard.handlers());
        const auto call = [this](const QString &method, const QVariantList &arguments) {
            QDBusMessage message = QDBusMessage::createMethodCall(Identifier, u"/org/cvtamber/Test"_s,
                                                                  u"org.freedesktop.Application"_s, method);
            message.setArguments(arguments);
            connection().send(message);
        };
        call(u"ActivateAction"_s, {u"settings"_s, QVariantList(), QVariantMap()});
        call(u"Open"_s, {QStringList{u"smb://host/a"_s, u"file:///b"_s}, QVariantMap()});
        QTRY_COMPARE(heard.events.size(), 3);
        QCOMPARE(heard.events,
                 (QStringList{u"action settings"_s, u"open /b and smb://host/a"_s, u"activate "_s}));
    }

    void theNameIsFreeAfterTheEnd()
    {
        {
            DesktopApplication first(connection(), Identifier);
            QCOMPARE(first.start({}), DesktopApplication::Start::First);
        }
        DesktopApplication next(connection(), Identifier);
        QCOMPARE(next.start({}), DesktopApplication::Start::First);
    }

    void withoutABusTheProgramRunsAlone()
    {
        DesktopApplication alone(QDBusConnection(u"none"_s), Identifier);
        QCOMPARE(alone.start({u"/a.txt"_s}), DesktopApplication::Start::NoBus);
    }

    void mailGoesThroughThePortal_data()
    {
        columns<uint, bool>("response", "handedOver");
        row("handed over", 0U, true);
        row("the person thought better of it", 1U, true);
        row("no mail program", 2U, false);
    }
    void mailGoesThroughThePortal()
    {
        QFETCH(uint, response);
        QFETCH(bool, handedOver);
        FakePortal portal(connection());
        portal.response = response;
        DesktopMail mail(_loop, _locations, connection());
        QVERIFY(mail.canSendMail());
        QCOMPARE(sendMail(mail), handedOver ? 1 : 0);
        QCOMPARE(portal.called, u"org.freedesktop.portal.Email.ComposeEmail"_s);
        QCOMPARE(portal.options.value(u"subject"_s).toString(), u"Letter to Ann"_s);
        QCOMPARE(portal.attachment, QByteArray("bytes\0 more", 11));
    }

    void aPortalThatDoesNotDoItIsNotTheEnd_data()
    {
        columns<int>("reply");
        row("refuses", static_cast<int>(FakePortal::Reply::Refuse));
        row("goes away", static_cast<int>(FakePortal::Reply::StaySilent));
    }
    void aPortalThatDoesNotDoItIsNotTheEnd()
    {
        QFETCH(int, reply);
        putProgram(u"xdg-email"_s, "exit 0");
        FakePortal portal(connection());
        portal.reply = static_cast<FakePortal::Reply>(reply);
        DesktopMail mail(_loop, _locations, connection());
        int result = -1;
        mail.compose(message(), [&result](bool done) { result = done ? 1 : 0; });
        QTRY_VERIFY(!portal.called.isEmpty());
        if (portal.reply == FakePortal::Reply::StaySilent)
            portal.leave();
        QTRY_COMPARE(result, 1);
    }

    void mailGoesThroughTheCommand()
    {
        putProgram(u"xdg-email"_s, "printf '%s\\n' \"$@\" > \"$0.arguments\"; cp \"$7\" \"$0.attachment\"");
        qputenv("PATH", qgetenv("PATH") + ":/usr/bin:/bin");
        DesktopMail mail(_loop, _locations, QDBusConnection(u"none"_s));
        QVERIFY(mail.canSendMail());
        QCOMPARE(sendMail(mail), 1);
        const QStringList arguments = QString::fromUtf8(written(u"xdg-email.arguments"_s)).split(u'\n');
        QCOMPARE(arguments.mid(0, 3), (QStringList{u"--utf8"_s, u"--subject"_s, u"Letter to Ann"_s}));
        QCOMPARE(written(u"xdg-email.attachment"_s), QByteArray("bytes\0 more", 11));
    }

    void aCommandThatFailsIsTold()
    {
        putProgram(u"xdg-email"_s, "exit 3");
        DesktopMail mail(_loop, _locations, QDBusConnection(u"none"_s));
        QCOMPARE(sendMail(mail), 0);
    }

    void withoutAMailProgramNobodyIsOfferedOne()
    {
        DesktopMail mail(_loop, _locations, QDBusConnection(u"none"_s));
        QVERIFY(!mail.canSendMail());
        QCOMPARE(sendMail(mail), 0);
    }

    // Some openers stay until the document is closed.
    void anOpenerThatStaysHasTakenTheFile()
    {
        putProgram(u"xdg-open"_s, "echo \"$1\" > \"$0.opened\"; exec /bin/sleep 20");
        DesktopPreview preview(_loop, QDBusConnection(u"none"_s));
        int result = -1;
        preview.show(u"/a b.txt"_s, [&result](bool shown) { result = shown ? 1 : 0; });
        QTRY_COMPARE_WITH_TIMEOUT(result, 1, 10000);
        QCOMPARE(written(u"xdg-open.opened"_s), QByteArray("/a b.txt\n"));
    }

    void withoutAnOpenerThePortalIsAsked()
    {
        QFile file(_programs->filePath(u"letter.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        FakePortal portal(connection());
        DesktopPreview preview(_loop, connection());
        int result = -1;
        preview.show(file.fileName(), [&result](bool shown) { result = shown ? 1 : 0; });
        QTRY_COMPARE(result, 1);
        QCOMPARE(portal.called, u"org.freedesktop.portal.OpenURI.OpenFile"_s);
    }

    void filesAreChosenThroughThePortal_data()
    {
        columns<bool, uint, QString>("hasPortal", "response", "chosen");
        row("two", true, 0U, u"/a b.txt and smb://c/d, failed: 0"_s);
        row("the person thought better of it", true, 1U, u" and , failed: 0"_s);
        row("the portal cannot", true, 2U, u" and , failed: 1"_s);
        row("no portal", false, 0U, u" and , failed: 1"_s);
    }
    void filesAreChosenThroughThePortal()
    {
        QFETCH(bool, hasPortal);
        QFETCH(uint, response);
        FakePortal portal(connection());
        portal.response = response;
        portal.results = {{u"uris"_s, QStringList{u"file:///a%20b.txt"_s, u"smb://c/d"_s}}};
        DesktopFileChooser chooser(hasPortal ? connection() : QDBusConnection(u"none"_s));
        QStringList told;
        const auto tell = [&told](const FileChooser::Choice &choice) {
            told.append(u"%1 and %2, failed: %3"_s.arg(choice.paths.join(u'|'), choice.others.join(u'|'))
                            .arg(choice.hasFailed));
        };
        chooser.choose(u"Open texts"_s, tell);
        chooser.choose(u"A second window"_s, tell);
        QTRY_COMPARE(told.size(), 1);
        QTEST(told.constFirst(), "chosen");
        QCOMPARE(portal.called, hasPortal ? u"org.freedesktop.portal.FileChooser.OpenFile"_s : QString());
        chooser.choose(u"Open more texts"_s, tell);
        QTRY_COMPARE(told.size(), 2);
    }

    // What is written to the place under a disk would be covered when the disk is back.
    void aFolderWithoutItsStoreIsNotThere()
    {
        const QTemporaryDir folder;
        ManualRunLoop loop;
        ManualTaskRunner tasks(loop);
        RecordingLog log;
        MemoryDefaults defaults;
        defaults.values.insert(u"cloudFolder"_s, folder.path());
        ChosenFolderContainer container({loop, tasks, FileOperations::system(), log, defaults});
        const auto isThere = [&container] {
            container.takeChoice();
            return !container.url().isNil();
        };
        QVERIFY(isThere());
        container.storeOpened();
        container.storeOpened();
        QVERIFY(isThere());
        const QString documents = folder.filePath(u"Documents"_s);
        const QString away = folder.filePath(u"away"_s);
        QVERIFY(QDir().rename(documents, away));
        QVERIFY(!isThere());
        QVERIFY(!QFileInfo::exists(documents));
        QVERIFY(QFile::link(away, documents));
        QVERIFY(isThere());
        QVERIFY(container.isUbiquitousItem(FileURL::directory(away % u"/ActiveUsers")));
        // Chosen again.
        QVERIFY(QFile::remove(documents) && !isThere());
        defaults.values.remove(u"cloudStore"_s);
        QVERIFY(isThere());
    }

private:
    QDBusConnection connection() { return QDBusConnection::connectToBus(_address, u"test"_s); }
    // As another process does it, while this one's loop runs.
    DesktopApplication::Start startElsewhere(const QStringList &files)
    {
        DesktopApplication::Start result{};
        const std::unique_ptr<QThread> thread(QThread::create([this, files, &result] {
            const QString name = u"second"_s;
            {
                DesktopApplication second(QDBusConnection::connectToBus(_address, name), Identifier);
                result = second.start(files);
            }
            QDBusConnection::disconnectFromBus(name);
        }));
        QEventLoop loop;
        connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
        thread->start();
        loop.exec();
        thread->wait();
        return result;
    }
    static MailMessage message()
    {
        return {u"Letter to Ann"_s, u"Dear Ann"_s,
                MailAttachment{QByteArray("bytes\0 more", 11), u"text/plain"_s, u"../a/b.txt"_s}};
    }
    // 1 handed over, 0 not, -1 no answer.
    int sendMail(DesktopMail &mail)
    {
        int result = -1;
        int answers = 0;
        mail.compose(message(), [&](bool done) {
            result = done ? 1 : 0;
            ++answers;
        });
        return QTest::qWaitFor([&answers] { return answers > 0; }, 10000) && answers == 1 ? result : -1;
    }
    void putProgram(const QString &name, const QByteArray &script)
    {
        QFile file(_programs->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("#!/bin/sh\n" + script + '\n') < 0)
            qFatal("The test's own program could not be written");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QByteArray written(const QString &name) const
    {
        QFile file(_programs->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    PrivateBus _bus;
    QString _address;
    QByteArray _path;
    std::unique_ptr<QTemporaryDir> _programs;
    EventRunLoop _loop;
    TemporaryLocations _locations;
};

QTEST_GUILESS_MAIN(tst_desktop)
#include "tst_desktop.moc"
