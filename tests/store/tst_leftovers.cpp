// SPDX-License-Identifier: GPL-3.0-or-later
// What a crash leaves behind, and what becomes of it an hour later.
#include "RegistryBench.h"
#include "support/FaultyFileOperations.h"
#include "support/Rows.h"
#include "support/StoreRig.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;
using Call = FaultyFileOperations::Call;

class tst_leftovers : public QObject
{
    Q_OBJECT

private:
    FaultyFileOperations _operations;
    std::unique_ptr<StoreRig> _rig;

    QStringList leftovers() const { return _rig->disk.list(_rig->directory({})).leftovers; }

private slots:
    void init()
    {
        _operations.clear();
        _rig = std::make_unique<StoreRig>(StoreRig::Place::Local, _operations);
    }

    // What another program does meanwhile and this one later; what is there when all has been swept, and what is in the trash.
    void aCrashAtTheExchangeLosesNothing_data()
    {
        columns<bool, bool, bool, QByteArray, QByteArray>("isExchanged", "isOtherThere", "isSavedAgain",
                                                          "found", "trash");
        row("before it", false, false, false, "old"_ba, "new"_ba);
        row("before it, then another's", false, true, false, "other"_ba, "new"_ba);
        row("after it", true, false, false, "new"_ba, "old"_ba);
        row("after it, another's came out", true, true, false, "new"_ba, "other"_ba);
        row("after it, another's came out, and saved again", true, true, true, "newer"_ba, "other"_ba);
    }
    void aCrashAtTheExchangeLosesNothing()
    {
        QFETCH(bool, isExchanged);
        QFETCH(bool, isOtherThere);
        QFETCH(bool, isSavedAgain);
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
            if (call == Call::Sync && !isExchanged)
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
        const QString leftover = leftovers().front();
        _rig->age(leftover);
        _rig->coordinator.sweep(_rig->directory({}), {});
        _rig->settle();
        QCOMPARE(_rig->names(), QStringList{u"a.tamber"_s});
        QTEST(_rig->bytes(u"a.tamber"_s), "found");
        QTEST(_rig->bytes(u"../Trash/1/"_s % leftover), "trash");
    }

    // There the monitor tells what is in a directory, and leaves them out.
    void inTheCloudTheyAreSweptToo()
    {
        const auto bench = RegistryBench::make(StoreRig::Place::Cloud);
        const QString user = u"ActiveUsers/11111111-1111-1111-1111-111111111111"_s;
        const QString folder = user % u"/22222222-2222-2222-2222-222222222222"_s;
        const QStringList found{u"ActiveUsers/.cvtamber-0000000000001"_s,
                                user % u"/.cvtamber-0000000000002"_s, folder % u"/.cvtamber-0000000000003"_s};
        for (const QString &leftover : found) {
            bench->rig.put(leftover, "x");
            bench->rig.age(leftover);
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
};

QTEST_GUILESS_MAIN(tst_leftovers)
#include "tst_leftovers.moc"
