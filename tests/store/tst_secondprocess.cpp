// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "support/Rows.h"
#include "support/RunningStore.h"
#include "support/StoreListing.h"

#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <optional>
#include <set>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString UserFolder = u"AAAAAAAA-0000-4000-8000-000000000001"_s;
const QString Folder = u"DDDDDDDD-0000-4000-8000-000000000004"_s;
constexpr int VersionsOutside = 40;
constexpr auto LongestWait = 60000;

// A store of one user with one folder, running, and another process that works in the user's directory.
class Neighbours
{
public:
    Neighbours()
    {
        outside(
            u"mkdir -p ActiveUsers/%1/%2; cd ActiveUsers/%1; printf 'A\\nB\\nC\\n' > user.txt; "
            "printf 'Maths\\n' > %2/folder.dat; printf old > Letter.tamber; printf sum > %2/Sum.tamber"_s.arg(
                UserFolder, Folder),
            _root.path());
        store.emplace(_root.path());
        store->waitUntilAtRest();
    }

    // Runs the lines to their end; a program that cannot be run leaves a tree that no case expects.
    static void outside(const QString &script, const QString &folder)
    {
        QProcess process;
        process.setWorkingDirectory(folder);
        process.start(u"/bin/sh"_s, {u"-ec"_s, script});
        QVERIFY(process.waitForFinished() && process.exitCode() == 0);
    }
    QString place() const { return _root.filePath(u"ActiveUsers/"_s + UserFolder); }
    std::shared_ptr<TamberUser> user() const { return store->storage->activeUsers()->users().front(); }
    std::shared_ptr<TamberDocument> letter() const { return user()->files().front(); }
    void save(const QString &text) const
    {
        letter()->setText(text);
        letter()->saveToURL(letter()->url(), Document::SaveOperation::ForOverwriting, {});
    }
    // The documents after the next load, by the path below the user.
    StoreListing listingOfNextLoad()
    {
        store->load(_root.path());
        store->waitUntilAtRest();
        StoreListing documents;
        for (const auto &[key, value] : listingOf(*store->storage, store->disk)) {
            if (key.endsWith(u".tamber"))
                documents[key.section(u'/', 2)] = value;
        }
        return documents;
    }
    // By the path below the folder.
    static StoreListing documentsIn(const QString &folder)
    {
        StoreListing documents;
        QDirIterator files(folder, {u"*.tamber"_s}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly))
                documents[file.fileName().mid(folder.size() + 1)] = QString::fromUtf8(file.readAll());
        }
        return documents;
    }
    StoreListing documentsOfUser() const { return documentsIn(place()); }
    // Also outside the lists, in the trash.
    bool hasText(const QString &text) const
    {
        const StoreListing all = documentsIn(_root.path());
        return std::any_of(all.begin(), all.end(), [&](const auto &entry) { return entry.second == text; });
    }

private:
    QTemporaryDir _root;

public:
    std::optional<RunningStore> store;
};

using Then = std::function<void(Neighbours &)>;

} // namespace

Q_DECLARE_METATYPE(Then)
Q_DECLARE_METATYPE(cvtamber::StoreListing)

class TestSecondProcess : public QObject
{
    Q_OBJECT

private slots:
    void oneAfterTheOther_data();
    void oneAfterTheOther();
    void atTheSameTime();
};

// The letter is open and listed, then the other process does its work, then the store does.
void TestSecondProcess::oneAfterTheOther_data()
{
    columns<QString, Then, StoreListing>("outside", "then", "found");
    const QString sum = Folder + u"/Sum.tamber"_s;
    const QString letter = u"Letter.tamber"_s;
    const QString copy = u"Letter (conflicted copy).tamber"_s;
    const Then save = [](Neighbours &all) { all.save(u"mine"_s); };
    const Then rename = [](Neighbours &all) { all.user()->renameFileAtIndex(0, u"Brief"_s); };
    const Then move = [](Neighbours &all) {
        all.user()->moveFile(all.letter(), all.user()->folderAtIndex(0));
    };
    const Then addInFolder = [](Neighbours &all) {
        all.user()->folderAtIndex(0)->addFileWithName(u"More"_s, u"more"_s);
    };
    const Then remove = [](Neighbours &all) { all.user()->deleteFileAtIndex(0); };
    const Then deleteFolder = [](Neighbours &all) { all.user()->deleteFolderAtIndex(0); };
    const Then nothing = [](Neighbours &) {};

    row("edited, then saved", u"printf theirs > Letter.tamber"_s, save,
        StoreListing{{letter, u"mine"_s}, {copy, u"theirs"_s}, {sum, u"sum"_s}});
    row("replaced, then saved", u"printf theirs > x; mv x Letter.tamber"_s, save,
        StoreListing{{letter, u"mine"_s}, {copy, u"theirs"_s}, {sum, u"sum"_s}});
    row("edited to the same, then saved", u"printf mine > Letter.tamber"_s, save,
        StoreListing{{letter, u"mine"_s}, {sum, u"sum"_s}});
    row("deleted, then saved", u"rm Letter.tamber"_s, save,
        StoreListing{{letter, u"mine"_s}, {sum, u"sum"_s}});
    row("renamed, then saved", u"mv Letter.tamber Note.tamber"_s, save,
        StoreListing{{letter, u"mine"_s}, {u"Note.tamber"_s, u"old"_s}, {sum, u"sum"_s}});
    row("renamed, then renamed", u"mv Letter.tamber Note.tamber"_s, rename,
        StoreListing{{u"Note.tamber"_s, u"old"_s}, {sum, u"sum"_s}});
    row("new name taken, then renamed", u"printf theirs > Brief.tamber"_s, rename,
        StoreListing{{letter, u"old"_s}, {u"Brief.tamber"_s, u"theirs"_s}, {sum, u"sum"_s}});
    row("destination taken, then moved", u"printf theirs > %1/Letter.tamber"_s.arg(Folder), move,
        StoreListing{{letter, u"old"_s}, {Folder + u"/Letter.tamber"_s, u"theirs"_s}, {sum, u"sum"_s}});
    row("folder removed, then moved there", u"rm -r */"_s, move, StoreListing{{letter, u"old"_s}});
    row("folder removed, then added to", u"rm -r */"_s, addInFolder, StoreListing{{letter, u"old"_s}});
    row("folder renamed, then added to", u"mv %1 F"_s.arg(Folder), addInFolder,
        StoreListing{{letter, u"old"_s}, {u"F/Sum.tamber"_s, u"sum"_s}});
    row("document added to a folder, then that deleted", u"printf theirs > %1/Theirs.tamber"_s.arg(Folder),
        deleteFolder, StoreListing{{letter, u"old"_s}});
    row("deleted, then deleted", u"rm Letter.tamber"_s, remove, StoreListing{{sum, u"sum"_s}});
    row("added and edited", u"printf new > New.tamber; printf more >> Letter.tamber"_s, nothing,
        StoreListing{{letter, u"oldmore"_s}, {u"New.tamber"_s, u"new"_s}, {sum, u"sum"_s}});
}

void TestSecondProcess::oneAfterTheOther()
{
    QFETCH(const QString, outside);
    QFETCH(const Then, then);
    QFETCH(const StoreListing, found);
    Neighbours all;
    all.letter()->openWithCompletionHandler({});
    all.store->waitUntilAtRest();
    Neighbours::outside(outside, all.place());
    then(all);
    all.store->waitUntilAtRest();
    QCOMPARE(difference(all.listingOfNextLoad(), found), QString());
    QCOMPARE(difference(all.documentsOfUser(), found), QString());
    QCOMPARE(all.hasText(u"theirs"_s), outside.contains(u"theirs"_s));
}

// The other process replaces the document whenever it finds a version of the store's, and never its own: so what it
// wrote must all be there in the end, since only the store could have lost it.
void TestSecondProcess::atTheSameTime()
{
    Neighbours all;
    QProcess other;
    other.setWorkingDirectory(all.place());
    other.start(u"python3"_s, {u"-c"_s, uR"(
import os
written = 0
while written < %1:
    with open("Letter.tamber") as file:
        ours = file.read().startswith("mine")
    if ours:
        with open("x", "w") as file:
            file.write(f"theirs {written}")
        os.rename("x", "Letter.tamber")
        written += 1
)"_s.arg(VersionsOutside)});
    all.letter()->openWithCompletionHandler({});
    all.store->waitUntilAtRest();
    int saves = 0;
    bool isSaving = false;
    QVERIFY(QTest::qWaitFor(
        [&] {
            if (!isSaving) {
                isSaving = true;
                all.letter()->setText(u"mine %1"_s.arg(++saves));
                all.letter()->saveToURL(all.letter()->url(), Document::SaveOperation::ForOverwriting,
                                        [&](bool) { isSaving = false; });
            }
            return other.state() == QProcess::NotRunning;
        },
        LongestWait));
    all.store->waitUntilAtRest();
    QVERIFY2(other.exitCode() == 0, other.readAllStandardError());
    std::set<QString> texts;
    for (const auto &[place, text] : all.listingOfNextLoad())
        texts.insert(text);
    for (int version = 0; version < VersionsOutside; ++version)
        QVERIFY2(texts.count(u"theirs %1"_s.arg(version)) == 1, qPrintable(QString::number(version)));
}

QTEST_GUILESS_MAIN(TestSecondProcess)
#include "tst_secondprocess.moc"
