// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileOperations.h"

#include "base/PathBytes.h"
#include "support/Rows.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

#include <sys/stat.h>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using Kind = FileStatus::Kind;

class tst_FileOperations : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> _folder;
    FileOperations &_operations = FileOperations::system();

    QString path(const QString &name = {}) const { return _folder->filePath(name); }
    void put(const QString &name, const QByteArray &bytes) const
    {
        std::error_code error;
        const auto file = _operations.createFile(path(name), error);
        QVERIFY2(file, error.message().c_str());
        QVERIFY(!file->write(bytes));
    }
    QByteArray bytesOf(const QString &name) const
    {
        QByteArray bytes;
        FileStamp stamp;
        return _operations.read(path(name), bytes, stamp) ? "<unreadable>" : bytes;
    }

private slots:
    void init() { _folder = std::make_unique<QTemporaryDir>(); }

    void anyNameComesBack_data()
    {
        columns<QByteArray, qsizetype>("bytes", "signs");
        row("plain", QByteArray("Letter.tamber"), qsizetype{13});
        row("UTF-8", QByteArray("Zo\xC3\xAB \xF0\x9F\x99\x82"), qsizetype{6});
        row("Latin-1", QByteArray("Zo\xEB.tamber"), qsizetype{10});
        row("byte-order mark", QByteArray("\xEF\xBB\xBFx"), qsizetype{2});
        row("replacement sign and odd byte", QByteArray("\xEF\xBF\xBD\xFF"), qsizetype{2});
        row("cut short", QByteArray("a\xE2\x82"), qsizetype{3});
        row("surrogate in UTF-8", QByteArray("\xED\xA0\x80\xF0\x9F\x99\x82\x82"), qsizetype{6});
    }
    void anyNameComesBack()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(qsizetype, signs);
        const QByteArray whole = QFile::encodeName(path()) + '/' + bytes;
        QCOMPARE(::mkdir(whole.constData(), 0700), 0);
        QList<FolderEntry> entries;
        QVERIFY(!_operations.list(path(), entries));
        QCOMPARE(entries.size(), qsizetype{1});
        QCOMPARE(entries[0].kind, Kind::Folder);
        QCOMPARE(entries[0].name.size(), signs);
        QCOMPARE(bytesOfPath(entries[0].name), bytes);
        QVERIFY(!_operations.rename(path(entries[0].name), path(u"plain"_s)));
        QCOMPARE(_operations.status(path(u"plain"_s)).kind, Kind::Folder);
    }

    void aPathThatNoFileCanHaveIsRefused()
    {
        const QStringList names{QString(), u"/tmp/a"_s + QChar(u'\0') + u'b', u"/tmp/"_s + QChar(0xD800)};
        for (const QString &name : names) {
            QCOMPARE(_operations.status(name).kind, Kind::Unknown);
            QVERIFY(_operations.makeFolder(name));
        }
        QCOMPARE(_operations.status(path(QString(300, u'n'))).kind, Kind::Missing);
    }

    void onlyAFreeNameIsTaken()
    {
        put(u"a"_s, "a");
        put(u"b"_s, "b");
        QVERIFY(!_operations.makeFolder(path(u"f"_s)));
        QVERIFY(QFile::link(path(u"nowhere"_s), path(u"link"_s)));
        QVERIFY(!_operations.link(path(u"a"_s), path(u"second name"_s)));
        for (const QString &name : {u"a"_s, u"b"_s, u"f"_s, u"link"_s, u"second name"_s}) {
            std::error_code error;
            QVERIFY(!_operations.createFile(path(name), error));
            QVERIFY(error == std::errc::file_exists);
            QVERIFY(_operations.renameToNewName(path(u"a"_s), path(name)) == std::errc::file_exists);
            QVERIFY(_operations.link(path(u"a"_s), path(name)) == std::errc::file_exists);
            QVERIFY(_operations.makeFolder(path(name)) == std::errc::file_exists);
        }
        QVERIFY(!_operations.exchange(path(u"a"_s), path(u"b"_s)));
        QCOMPARE(bytesOf(u"a"_s), QByteArrayLiteral("b"));
        QCOMPARE(bytesOf(u"second name"_s), QByteArrayLiteral("a"));
        QVERIFY(!_operations.renameToNewName(path(u"a"_s), path(u"A"_s)));
        QCOMPARE(bytesOf(u"A"_s), QByteArrayLiteral("b"));
    }

    void aFileThatGrewIsReadWhole()
    {
        const QByteArray bytes(200000, 'x');
        for (const qsizetype size : {0, 1, 200000}) {
            put(QString::number(size), bytes.first(size));
            QCOMPARE(bytesOf(QString::number(size)), bytes.first(size));
        }
        // Its size is not known before it is read.
        QByteArray limits;
        FileStamp stamp;
        if (QFile::exists(u"/proc/self/limits"_s)) {
            QVERIFY(!_operations.read(u"/proc/self/limits"_s, limits, stamp));
            QVERIFY(limits.contains("Max open files"));
        }
    }
};

QTEST_APPLESS_MAIN(tst_FileOperations)
#include "tst_FileOperations.moc"
