// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreDisk.h"

#include "base/HiddenFile.h"
#include "support/FaultyFileOperations.h"
#include "support/Rows.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <csignal>
#include <memory>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using Call = FaultyFileOperations::Call;
using Outcome = FileResult::Outcome;
using OtherVersion = StoreDisk::OtherVersion;
// What a person sees: the paths of files and folders ("name/") with the files' bytes; nothing hidden of ours.
using Tree = QMap<QString, QByteArray>;

Q_DECLARE_METATYPE(Outcome)

namespace {

const QByteArray Old(9000, 'o');
const QByteArray New(7000, 'n');
const QByteArray Other(9000, 'x');

void put(const QString &path, const QByteArray &bytes)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

Tree treeOf(const QString &folder)
{
    Tree tree;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString name = path.mid(folder.size() + 1);
        QFile file(path);
        const auto parts = name.split(u'/');
        if (std::any_of(parts.begin(), parts.end(), &isHiddenName))
            continue;
        if (it.fileInfo().isDir() && !it.fileInfo().isSymbolicLink())
            tree.insert(name + u'/', {});
        else if (it.fileInfo().isFile() && file.open(QIODevice::ReadOnly))
            tree.insert(name, file.readAll());
        else
            tree.insert(name, "<special>");
    }
    return tree;
}

} // namespace

class tst_storedisk : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> _folder;
    FaultyFileOperations _operations;
    StoreDisk _disk{_operations};

    QString path(const QString &name = {}) const { return _folder->filePath(name); }
    FileURL url(const QString &name) const { return FileURL::file(path(name)); }
    FileURL folder(const QString &name) const { return FileURL::directory(path(name)); }
    Tree tree() const { return treeOf(path()); }
    FileStamp stampOf(const QString &name) const { return FileOperations::system().status(path(name)).stamp; }

    struct Operation
    {
        QString name;
        Tree before;
        // As it may look after a failure, the first one also after success.
        QList<Tree> after;
        std::function<FileResult()> run;
        bool acrossDevices = false;
    };
    QList<Operation> operations() const;
    void failEachCall(const Operation &operation, bool andAllThatFollow);

private slots:
    void init()
    {
        _folder = std::make_unique<QTemporaryDir>();
        _operations.clear();
    }

    void creatingTakesAFreeNameOnly_data()
    {
        columns<QString>("there");
        row("file", u"a.tamber"_s);
        row("placeholder", u".a.tamber.icloud"_s);
        row("folder", u"a.tamber/b"_s);
    }
    void creatingTakesAFreeNameOnly()
    {
        QFETCH(QString, there);
        put(path(there), Old);
        const Tree before = tree();
        QCOMPARE(_disk.create(url(u"a.tamber"_s), New).outcome, Outcome::AlreadyExists);
        QCOMPARE(tree(), before);
        const WriteResult made = _disk.create(url(u"b.tamber"_s), New);
        QVERIFY(made.ok() && made.stamp == stampOf(u"b.tamber"_s));
        QCOMPARE(tree().value(u"b.tamber"_s), New);
    }

    void bothVersionsAreKept_data()
    {
        columns<bool, QByteArray, OtherVersion, bool>("known", "there", "otherVersion", "kept");
        row("the known one", true, Old, OtherVersion::Keep, false);
        row("another's", false, Old, OtherVersion::Keep, true);
        row("another's of the same bytes", false, New, OtherVersion::Keep, false);
        row("another's of a record", false, Old, OtherVersion::Replace, false);
    }
    void bothVersionsAreKept()
    {
        QFETCH(bool, known);
        QFETCH(QByteArray, there);
        QFETCH(OtherVersion, otherVersion);
        QFETCH(bool, kept);
        for (const bool exchanges : {true, false}) {
            for (const bool links : {true, false}) {
                init();
                if (!exchanges)
                    _operations.failEvery(Call::Exchange, std::errc::operation_not_supported);
                if (!links)
                    _operations.failEvery(Call::Link, std::errc::operation_not_supported);
                put(path(u"a.tamber"_s), there);
                put(path(u"a (conflicted copy).tamber"_s), Other);
                const FileStamp version = known ? stampOf(u"a.tamber"_s) : FileStamp();
                const WriteResult result = _disk.replace(url(u"a.tamber"_s), New, version, otherVersion);
                QVERIFY2(result.ok(), qPrintable(result.message));
                Tree expected{{u"a.tamber"_s, New}, {u"a (conflicted copy).tamber"_s, Other}};
                if (kept)
                    expected.insert(u"a (conflicted copy 2).tamber"_s, there);
                QCOMPARE(tree(), expected);
                QCOMPARE(result.keptOther, kept ? url(u"a (conflicted copy 2).tamber"_s) : FileURL());
                QCOMPARE(result.stamp, stampOf(u"a.tamber"_s));
                // What was written is the known version of the next save.
                QVERIFY(_disk.replace(url(u"a.tamber"_s), Old, result.stamp, otherVersion).keptOther.isNil());
            }
        }
    }

    // Another program comes between the look and the step that follows.
    void aFasterProgramLosesNothing_data()
    {
        columns<Call, bool, QByteArray, bool>("before", "known", "does", "kept");
        row("saves", Call::Exchange, true, Other, true);
        row("saves again", Call::Exchange, false, Other, true);
        row("saves while it is kept", Call::Link, false, Other, true);
        row("removes", Call::Exchange, true, QByteArray(), false);
        row("makes it", Call::RenameToNewName, true, Other, true);
    }
    void aFasterProgramLosesNothing()
    {
        QFETCH(Call, before);
        QFETCH(bool, known);
        QFETCH(QByteArray, does);
        QFETCH(bool, kept);
        if (before != Call::RenameToNewName)
            put(path(u"a"_s), Old);
        _operations.setBefore([&, once = false](Call call, const QString &) mutable {
            if (call != before || std::exchange(once, true))
                return;
            QFile::remove(path(u"a"_s));
            if (!does.isEmpty())
                put(path(u"a"_s), does);
        });
        const FileStamp version = known ? stampOf(u"a"_s) : FileStamp();
        const WriteResult result = _disk.replace(url(u"a"_s), New, version, OtherVersion::Keep);
        QVERIFY2(result.ok(), qPrintable(result.message));
        const Tree after = tree();
        QCOMPARE(after.value(u"a"_s), New);
        QCOMPARE(after.values().contains(Other), kept);
        QCOMPARE(!result.keptOther.isNil(), kept);
        if (!known && before == Call::Exchange)
            QVERIFY(after.values().contains(Old));
    }

    void aFailureLeavesTheOldOrTheNewState()
    {
        for (const Operation &operation : operations()) {
            failEachCall(operation, false);
            failEachCall(operation, true);
            if (QTest::currentTestFailed())
                return;
        }
    }

    void aFullDiskLeavesTheOldState()
    {
        put(path(u"a"_s), "old");
        rlimit limit{};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &limit), 0);
        const rlimit unlimited = limit;
        limit.rlim_cur = 5000;
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        const auto created = _disk.create(url(u"b"_s), New);
        const auto replaced = _disk.replace(url(u"a"_s), New, {}, OtherVersion::Keep);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &unlimited), 0);
        std::signal(SIGXFSZ, handler);
        QCOMPARE(created.outcome, Outcome::Failed);
        QCOMPARE(replaced.outcome, Outcome::Failed);
        QVERIFY(!replaced.message.isEmpty() && !replaced.message.contains(u'/'));
        QCOMPARE(tree(), (Tree{{u"a"_s, "old"}}));
        QVERIFY(_disk.list(folder(QString())).leftovers.isEmpty());
    }

    void linksAreNotFollowed()
    {
        put(path(u"real/a"_s), Old);
        QVERIFY(QFile::link(path(u"real"_s), path(u"link"_s)));
        QVERIFY(QFile::link(path(u"real/a"_s), path(u"a"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
        const Tree before = tree();
        QCOMPARE(_disk.list(folder(QString())).entries.size(), size_t{1});
        QVERIFY(!_disk.list(folder(u"link"_s)).ok());
        QCOMPARE(_disk.walk(folder(QString())).files, std::vector<FileURL>{url(u"real/a"_s)});
        for (const QString &name : {u"a"_s, u"pipe"_s, u"real"_s}) {
            QCOMPARE(_disk.read(url(name)).outcome, Outcome::Failed);
            QCOMPARE(_disk.replace(url(name), New, {}, OtherVersion::Replace).outcome, Outcome::Failed);
            QCOMPARE(_disk.create(url(name), New).outcome, Outcome::AlreadyExists);
        }
        const QList<Outcome> refused{
            _disk.create(url(u"link/b"_s), New).outcome,
            _disk.replace(url(u"link/a"_s), New, stampOf(u"real/a"_s), OtherVersion::Replace).outcome,
            _disk.makeFolder(folder(u"link/f"_s)).outcome,
            _disk.makeFolders(folder(u"link/f/g"_s)).outcome,
            _disk.move(url(u"link/a"_s), url(u"b"_s)).outcome,
            _disk.move(url(u"real/a"_s), url(u"link/b"_s)).outcome,
            _disk.remove(url(u"link/a"_s)).outcome,
            _disk.create(FileURL(), New).outcome,
        };
        for (const Outcome outcome : refused)
            QCOMPARE(outcome, Outcome::Failed);
        QCOMPARE(tree(), before);
        QVERIFY(_disk.remove(url(u"link"_s)).ok() && _disk.remove(url(u"a"_s)).ok());
        QCOMPARE(tree().value(u"real/a"_s), Old);
        QCOMPARE(_disk.remove(url(u"a"_s)).outcome, Outcome::Missing);
    }

    void aPlaceholderStandsForItsItem_data()
    {
        columns<QString, QString>("placeholder", "moved");
        row("iCloud", u".a.tamber.icloud"_s, u"f/.b.tamber.icloud"_s);
        row("Nextcloud", u"a.tamber.nextcloud"_s, u"f/b.tamber.nextcloud"_s);
    }
    void aPlaceholderStandsForItsItem()
    {
        QFETCH(QString, placeholder);
        QFETCH(QString, moved);
        put(path(placeholder), "p");
        put(path(u"f/c.tamber"_s), Old);
        const FileURL item = url(u"a.tamber"_s);
        QVERIFY(_disk.exists(item));
        QCOMPARE(_disk.read(item).outcome, Outcome::NotDownloaded);
        QCOMPARE(_disk.replace(item, New, {}, OtherVersion::Replace).outcome, Outcome::NotDownloaded);
        QCOMPARE(_disk.move(url(u"f/c.tamber"_s), item).outcome, Outcome::AlreadyExists);
        QCOMPARE(_disk.move(item, url(u"f/c.tamber"_s)).outcome, Outcome::AlreadyExists);
        // A name that leaves no room for the placeholder's end.
        QCOMPARE(_disk.move(item, url(u"f/"_s + QString(253, u'n'))).outcome, Outcome::Failed);
        QVERIFY(_disk.move(item, url(u"f/b.tamber"_s)).ok());
        QCOMPARE(tree(), (Tree{{u"f/"_s, {}}, {moved, "p"}, {u"f/c.tamber"_s, Old}}));
        QVERIFY(_disk.remove(url(u"f/b.tamber"_s)).ok());
        QVERIFY(!_disk.exists(url(u"f/b.tamber"_s)));
    }

    void movingTakesAFreeNameOnly()
    {
        put(path(u"a"_s), Old);
        put(path(u"b"_s), Other);
        put(path(u"f/g/c"_s), Old);
        for (const char *to : {"a", "b", "f"})
            QCOMPARE(_disk.move(url(u"a"_s), url(QString::fromLatin1(to))).outcome, Outcome::AlreadyExists);
        QCOMPARE(_disk.move(folder(u"f"_s), folder(u"f/g/h"_s)).outcome, Outcome::Failed);
        QCOMPARE(_disk.move(url(u"missing"_s), url(u"c"_s)).outcome, Outcome::Missing);
        QCOMPARE(_disk.move(url(u"a"_s), url(u"no folder/a"_s)).outcome, Outcome::Failed);
        QVERIFY(_disk.move(url(u"a"_s), url(u"A"_s)).ok());
        QVERIFY(_disk.move(folder(u"f/g"_s), folder(u"g"_s)).ok());
        QCOMPARE(tree(),
                 (Tree{{u"A"_s, Old}, {u"b"_s, Other}, {u"f/"_s, {}}, {u"g/"_s, {}}, {u"g/c"_s, Old}}));
    }

    void movingToAnotherFileSystemCopies()
    {
        QTemporaryDir elsewhere(u"/dev/shm/tst_storedisk-XXXXXX"_s);
        const bool isReal =
            elsewhere.isValid() &&
            stampOf(QString()).device != _disk.status(FileURL::directory(elsewhere.path())).stamp.device;
        const QString target = isReal ? elsewhere.path() : path(u"target"_s);
        put(path(u"f/g/a"_s), Old);
        put(path(u"f/.cvtamber-000000000half"_s), Other);
        const Tree copied{{u"f/"_s, {}}, {u"f/g/"_s, {}}, {u"f/g/a"_s, Old}};
        QVERIFY(QFile::setPermissions(path(u"f/g/a"_s), QFile::ReadOwner));
        if (!isReal) {
            QVERIFY(QDir().mkpath(target));
            _operations.add(
                {std::make_error_code(std::errc::cross_device_link), Call::RenameToNewName, {}, 1, 1});
        }
        const FileResult moved = _disk.move(folder(u"f"_s), FileURL::directory(target + u"/f"));
        QVERIFY2(moved.ok(), qPrintable(moved.message));
        QCOMPARE(treeOf(target), copied);
        QCOMPARE(QFile::permissions(target + u"/f/g/a") & QFile::WriteOwner, 0);
        QVERIFY(!QFileInfo::exists(path(u"f"_s)));
    }

    void whatChangedWhileItWasCopiedStays()
    {
        put(path(u"f/a"_s), Old);
        put(path(u"f/b"_s), Old);
        QVERIFY(QDir(path()).mkdir(u"t"_s));
        _operations.add(
            {std::make_error_code(std::errc::cross_device_link), Call::RenameToNewName, {}, 1, 1});
        _operations.setBefore([&](Call call, const QString &) {
            if (call != Call::RenameToNewName)
                return;
            put(path(u"f/a"_s), New);
            put(path(u"f/c"_s), New);
        });
        QCOMPARE(_disk.move(folder(u"f"_s), folder(u"t/f"_s)).outcome, Outcome::Failed);
        QCOMPARE(tree(), (Tree{{u"f/"_s, {}},
                               {u"f/a"_s, New},
                               {u"f/c"_s, New},
                               {u"t/"_s, {}},
                               {u"t/f/"_s, {}},
                               {u"t/f/a"_s, Old},
                               {u"t/f/b"_s, Old}}));
    }

    void onlyAnEmptyFolderIsRemoved()
    {
        put(path(u"f/a"_s), Old);
        put(path(u"f/.cvtamber-000000000000x/b"_s), Old);
        QVERIFY(!_disk.isEmptyFolder(folder(u"f"_s)));
        QCOMPARE(_disk.remove(folder(u"f"_s)).outcome, Outcome::Failed);
        QVERIFY(QFileInfo::exists(path(u"f/.cvtamber-000000000000x/b"_s)));
        QVERIFY(_disk.remove(url(u"f/a"_s)).ok());
        QVERIFY(_disk.isEmptyFolder(folder(u"f"_s)));
        QVERIFY(_disk.remove(folder(u"f"_s)).ok());
        QCOMPARE(tree(), Tree());
    }

    void onlyOldLeftoversAreTold()
    {
        const QStringList names{u".cvtamber-0000000000old"_s, u".cvtamber-0000000000new"_s,
                                u".cvtamber-000000000busy/new"_s, u".cvtamber-000000000000f/g/old"_s,
                                u"old"_s};
        for (const QString &name : names)
            put(path(name), Old);
        put(path(u"outside"_s), Old);
        QVERIFY(QFile::link(path(u"outside"_s), path(u".cvtamber-000000000000f/link"_s)));
        const timespec old{::time(nullptr) - 3700, 0};
        const std::array<timespec, 2> times{old, old};
        for (const char *name : {".cvtamber-0000000000old", "old", ".cvtamber-000000000000f/g/old",
                                 ".cvtamber-000000000000f/link", ".cvtamber-000000000000f/g",
                                 ".cvtamber-000000000000f", ".cvtamber-000000000busy"}) {
            const QByteArray bytes = QFile::encodeName(path(QString::fromLatin1(name)));
            QCOMPARE(::utimensat(AT_FDCWD, bytes.constData(), times.data(), AT_SYMLINK_NOFOLLOW), 0);
        }
        const auto found = _disk.list(folder(QString()));
        QCOMPARE(found.leftovers.size(), 4);
        QStringList swept =
            _disk.oldLeftovers(folder(QString()), found.leftovers + QStringList{u"old"_s, u"../x"_s});
        swept.sort();
        QCOMPARE(swept, (QStringList{u".cvtamber-000000000000f"_s, u".cvtamber-0000000000old"_s}));
    }

    void aListingThatIsCutShortIsTold()
    {
        for (const char *name : {"a", "b", "f/c", "f/d"})
            put(path(QString::fromLatin1(name)), Old);
        QCOMPARE(_disk.list(folder(u"missing"_s)).outcome, Outcome::Missing);
        _operations.failPath(path(u"f"_s), std::errc::io_error);
        const auto listing = _disk.list(folder(u"f"_s));
        QCOMPARE(listing.outcome, Outcome::Failed);
        QCOMPARE(listing.entries.size(), size_t{1});
        QCOMPARE(_disk.walk(folder(QString())).outcome, Outcome::Failed);
        QVERIFY(!_disk.isEmptyFolder(folder(u"f"_s)));
        // What cannot be looked at is not taken for absent.
        QVERIFY(_disk.exists(folder(u"f"_s)));
        QVERIFY(!_disk.exists(url(u"g"_s)));
    }
};

QList<tst_storedisk::Operation> tst_storedisk::operations() const
{
    const auto known = [this] { return stampOf(u"a"_s); };
    const auto replace = [this](const FileStamp &stamp) {
        return _disk.replace(url(u"a"_s), New, stamp, OtherVersion::Keep);
    };
    const auto moveFolder = [this] { return _disk.move(folder(u"f"_s), folder(u"t/f"_s)); };
    const Tree one{{u"a"_s, Old}};
    const Tree inFolder{{u"f/"_s, {}}, {u"f/a"_s, Old}, {u"t/"_s, {}}};
    const Tree moved{{u"t/"_s, {}}, {u"t/f/"_s, {}}, {u"t/f/a"_s, Old}};
    Tree both = inFolder;
    both.insert(moved);
    Tree sourceEmpty = moved;
    sourceEmpty.insert(u"f/"_s, {});
    const Tree kept{{u"a"_s, New}, {u"a (conflicted copy)"_s, Old}};
    return {
        {u"create"_s, {}, {{{u"a"_s, New}}, {}}, [this] { return _disk.create(url(u"a"_s), New); }},
        {u"replace"_s, one, {{{u"a"_s, New}}, one}, [=] { return replace(known()); }},
        {u"replace another's"_s,
         one,
         {kept, one, {{u"a"_s, Old}, {u"a (conflicted copy)"_s, Old}}},
         [=] { return replace({}); }},
        {u"move"_s, one, {{{u"b"_s, Old}}, one}, [this] { return _disk.move(url(u"a"_s), url(u"b"_s)); }},
        {u"move a folder"_s, inFolder, {moved, inFolder}, moveFolder},
        {u"move to another file system"_s, inFolder, {moved, inFolder, both, sourceEmpty}, moveFolder, true},
        {u"remove"_s, one, {{}, one}, [this] { return _disk.remove(url(u"a"_s)); }},
        {u"make folders"_s,
         one,
         {{{u"a"_s, Old}, {u"f/"_s, {}}, {u"f/g/"_s, {}}}, one, {{u"a"_s, Old}, {u"f/"_s, {}}}},
         [this] { return _disk.makeFolders(folder(u"f/g"_s)); }},
    };
}

void tst_storedisk::failEachCall(const Operation &operation, bool andAllThatFollow)
{
    for (int number = 1;; ++number) {
        init();
        for (auto it = operation.before.cbegin(); it != operation.before.cend(); ++it) {
            if (it.key().endsWith(u'/'))
                QVERIFY(QDir().mkpath(path(it.key())));
            else
                put(path(it.key()), it.value());
        }
        if (operation.acrossDevices)
            _operations.add(
                {std::make_error_code(std::errc::cross_device_link), Call::RenameToNewName, {}, 1, 1});
        const int last = andAllThatFollow ? std::numeric_limits<int>::max() : number;
        _operations.add({std::make_error_code(std::errc::no_space_on_device), {}, {}, number, last});
        const FileResult result = operation.run();
        const int calls = _operations.calls();
        const QByteArray where = operation.name.toUtf8() + ", call " + QByteArray::number(number);
        QVERIFY2(operation.after.contains(tree()), where.constData());
        if (result.ok())
            QVERIFY2(tree() == operation.after.first(), where.constData());
        else
            QVERIFY2(result.message.contains(u"no space left on device"), where.constData());
        if (number > calls) {
            QVERIFY2(result.ok(), where.constData());
            return;
        }
    }
}

QTEST_APPLESS_MAIN(tst_storedisk)
#include "tst_storedisk.moc"
