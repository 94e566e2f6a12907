// SPDX-License-Identifier: GPL-3.0-or-later
// What a crash leaves behind, and what becomes of it an hour later.
#include "RegistryBench.h"
#include "store/ExchangeMark.h"
#include "support/FaultyFileOperations.h"
#include "support/Rows.h"
#include "support/StoreRig.h"

#include <QFile>

#include <array>

#include <fcntl.h>
#include <sys/stat.h>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using Call = FaultyFileOperations::Call;

class tst_leftovers : public QObject
{
    Q_OBJECT

private:
    FaultyFileOperations _operations;
    std::unique_ptr<StoreRig> _rig;

    // As it is a little more than an hour later.
    static void age(const StoreRig &rig, const QString &name)
    {
        const timespec then{::time(nullptr) - 3700, 0};
        const std::array<timespec, 2> times{then, then};
        const QByteArray bytes = QFile::encodeName(rig.path(name));
        QCOMPARE(::utimensat(AT_FDCWD, bytes.constData(), times.data(), AT_SYMLINK_NOFOLLOW), 0);
    }
    QStringList leftovers() const { return _rig->disk.list(_rig->directory({})).leftovers; }

private slots:
    void init()
    {
        _operations.clear();
        _rig = std::make_unique<StoreRig>(StoreRig::Place::Local, _operations);
    }

    // What another program does meanwhile and this one later, and what is there when all has been swept.
    void aCrashAtTheExchangeLosesNothing_data()
    {
        columns<bool, bool, bool, QStringList>("isExchanged", "isOtherThere", "isSavedAgain", "found");
        row("before it", false, false, false, QStringList{u"a.tamber: old"_s});
        row("before it, then another's", false, true, false, QStringList{u"a.tamber: other"_s});
        row("after it", true, false, false, QStringList{u"a.tamber: new"_s});
        row("after it, another's came out", true, true, false,
            QStringList{u"a (conflicted copy).tamber: other"_s, u"a.tamber: new"_s});
        row("after it, another's came out, and saved again", true, true, true,
            QStringList{u"Untitled (conflicted copy).tamber: other"_s, u"a.tamber: newer"_s});
    }
    void aCrashAtTheExchangeLosesNothing()
    {
        QFETCH(bool, isExchanged);
        QFETCH(bool, isOtherThere);
        QFETCH(bool, isSavedAgain);
        QFETCH(QStringList, found);
        const auto save = [this](const QByteArray &text) {
            const FileURL url = _rig->file(u"a.tamber"_s);
            return _rig->disk.replace(url, text, _rig->disk.status(url).stamp, StoreDisk::OtherVersion::Keep);
        };
        const auto replaceFromOutside = [&] {
            _rig->erase(u"a.tamber"_s);
            _rig->put(u"a.tamber"_s, "other");
        };
        // The one that is called last, and all that it would still do.
        const auto die = [this] {
            for (const Call call : {Call::Exchange, Call::Status, Call::RemoveFile, Call::SyncFolder})
                _operations.failEvery(call, std::errc::io_error);
        };
        _rig->put(u"a.tamber"_s, "old");
        _operations.setBefore([&](Call call, const QString &) {
            if (call == Call::Rename && !isExchanged)
                die();
            if (call == Call::Exchange && isOtherThere)
                replaceFromOutside();
            if (call == Call::Exchange)
                die();
        });
        save("new");
        _operations.clear();
        QCOMPARE(leftovers().size(), 1);
        if (isOtherThere && !isExchanged)
            replaceFromOutside();
        if (isSavedAgain)
            QVERIFY(save("newer").ok());
        age(*_rig, leftovers().front());
        _rig->disk.sweep(_rig->directory({}), leftovers());
        QStringList files;
        for (const QString &name : _rig->names())
            files.append(QString(name % u": "_s % QString::fromUtf8(_rig->bytes(name))));
        QCOMPARE(files, found);
    }

    // There the monitor tells what is in a directory, and leaves them out.
    void inTheCloudTheyAreSweptToo()
    {
        const auto bench = RegistryBench::make(StoreRig::Place::Cloud);
        const QString user = u"ActiveUsers/11111111-1111-1111-1111-111111111111"_s;
        const QString folder = user % u"/22222222-2222-2222-2222-222222222222"_s;
        const QStringList found{u"ActiveUsers/.cvtamber-1"_s, user % u"/.cvtamber-2"_s,
                                folder % u"/.cvtamber-3"_s};
        for (const QString &leftover : found) {
            bench->rig.put(leftover, "x");
            age(bench->rig, leftover);
        }
        for (const QString &record : {QString(user % u"/user.txt"_s), QString(folder % u"/folder.dat"_s)}) {
            bench->rig.put(record, "Anna\n\n\n");
            bench->rig.cloud.setItem(bench->rig.file(record), TamberUbiquitousItem::Downloaded);
        }
        const auto users = bench->open();
        users->startQuery();
        bench->rig.cloud.gather();
        bench->rig.settle();
        for (const QString &leftover : found)
            QVERIFY2(!bench->rig.has(leftover), qPrintable(leftover));
        QVERIFY(bench->rig.has(folder % u"/folder.dat"_s));
    }

    void onlyAWholeMarkIsOne()
    {
        const ExchangeMark mark{~quint64{0}, 35, 9000};
        const auto read = ExchangeMark::ofName(QString(u".cvtamber-1a2b"_s % mark.toText()));
        QVERIFY(read);
        QVERIFY(read->madeInode == mark.madeInode && read->knownInode == 35 && read->knownSize == 9000);
        for (const char *name : {".cvtamber-1a2b", ".cvtamber-1-2-3", ".cvtamber-1-2-3-4-5",
                                 ".cvtamber-1-2-3-", ".cvtamber-1-2-3-!", "x-1-2-3", ""})
            QVERIFY2(!ExchangeMark::ofName(QString::fromLatin1(name)), name);
    }
};

QTEST_GUILESS_MAIN(tst_leftovers)
#include "tst_leftovers.moc"
