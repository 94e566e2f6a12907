// SPDX-License-Identifier: GPL-3.0-or-later
#include "powercut/DiskModel.h"
#include "powercut/Scenarios.h"
#include "store/TamberStorage.h"
#include "support/Rows.h"
#include "support/StoreListing.h"

#include <QDir>
#include <QTest>

#include <cstdio>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

constexpr quint32 Seed = 20261123;

// What a store lists that is opened over the tree.
StoreListing listingAfterReopening(const TreeImage &tree)
{
    StoreRig rig;
    if (!writeTree(tree, rig.root().path()))
        qFatal("a tree could not be written");
    StoreListing listing;
    const FileURL second = rig.root().appendingDirectory(SecondStore.toString());
    if (rig.disk.isFolder(second))
        listing = listingOf(*OpenStore(rig, second).storage, rig.disk);
    OpenStore store(rig);
    // What is in both counts as it is in the second.
    listing.merge(listingOf(*store.storage, rig.disk));
    return listing;
}

bool hasUsers(const QString &root)
{
    return !QDir(root + u"/ActiveUsers").isEmpty() || !QDir(root + u"/ArchivedUsers").isEmpty();
}

bool contains(const StoreListing &whole, const StoreListing &part)
{
    return std::all_of(part.begin(), part.end(), [&](const auto &entry) {
        const auto found = whole.find(entry.first);
        return found != whole.end() && found->second == entry.second;
    });
}

// A new user or folder has a name that nobody can know before.
StoreListing withPlainNames(const StoreListing &listing)
{
    StoreListing result;
    for (const auto &[key, value] : listing) {
        QStringList parts = key.split(u'/');
        for (QString &part : parts) {
            if (part.size() == 36 && !OpenStore::knows(part))
                part = u"NEW"_s;
        }
        result[parts.join(u'/')] = value;
    }
    return result;
}

// Judges what is found after the power came back.
class Judge
{
public:
    Judge(const Scenario &scenario, const TreeImage &before, const TreeImage &after)
        : _scenario(scenario)
        , _old(withPlainNames(listingAfterReopening(before)))
        , _new(withPlainNames(listingAfterReopening(after)))
        , _alsoFound(_old)
    {
        scenario.alsoFound(_alsoFound);
    }

    const StoreListing &listingBefore() const { return _old; }
    const StoreListing &listingAfter() const { return _new; }
    // How many different trees were opened.
    size_t treeCount() const { return _listings.size(); }

    // Null when all is as it must be.
    QString fault(const TreeImage &tree, bool isDone)
    {
        const QByteArray digest = digestOf(tree);
        auto known = _listings.find(digest);
        if (known == _listings.end())
            known = _listings.emplace(digest, withPlainNames(listingAfterReopening(tree))).first;
        if (isAllowed(known->second, isDone))
            return {};
        return u"differs from the old state: %1\nfrom the new state%2: %3\non the disk: %4"_s.arg(
            difference(known->second, _old), isDone ? u" (said to be done)"_s : QString(),
            difference(known->second, _new), describe(tree));
    }

private:
    bool isAllowed(const StoreListing &found, bool isDone) const
    {
        switch (_scenario.between) {
        case Between::OneOrTheOther:
            return found == _new || (!isDone && (found == _old || found == _alsoFound));
        case Between::BothTogether:
            return std::all_of(found.begin(), found.end(),
                               [&](const auto &entry) { return isKnown(entry, found); }) &&
                   (contains(found, _new) || (!isDone && contains(found, _old)));
        case Between::PartlyGone:
            break;
        }
        return contains(found, _new) && std::all_of(found.begin(), found.end(),
                                                    [&](const auto &entry) { return isKnown(entry, found); });
    }
    // As it was or as it is to be. What goes last, goes bit by bit: a folder whose record went first has no name.
    bool isKnown(const StoreListing::value_type &entry, const StoreListing &found) const
    {
        return contains(_old, {entry}) || contains(_new, {entry}) ||
               (_old.count(entry.first) != 0 && entry.second.isNull() && contains(found, _new));
    }

    const Scenario &_scenario;
    StoreListing _old;
    StoreListing _new;
    StoreListing _alsoFound;
    std::map<QByteArray, StoreListing> _listings;
};

// Calls on a disk that holds "a" with "old".
RecordedCall call(RecordedCall::What what, const QString &path = {}, const QString &other = {})
{
    return {what, path, other, 1, what == RecordedCall::What::Write ? "bytes!"_qba : QByteArray()};
}

} // namespace

Q_DECLARE_METATYPE(std::vector<cvtamber::RecordedCall>)

class TestPowerCut : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void whatTheModelFinds_data();
    void whatTheModelFinds();
    void nothingIsLost_data();
    void nothingIsLost();
    void cleanupTestCase();

private:
    size_t _trees = 0;
    size_t _cuts = 0;
};

void TestPowerCut::initTestCase()
{
    // Thousands of small trees want no disk; where there is no such place the usual one does.
    if (QFileInfo(u"/dev/shm"_s).isWritable())
        qputenv("TMPDIR", "/dev/shm");
}

// A model that let everything through would prove nothing.
void TestPowerCut::whatTheModelFinds_data()
{
    using What = RecordedCall::What;
    columns<std::vector<RecordedCall>, QStringList>("calls", "found");
    const RecordedCall create = call(What::CreateFile, u"t"_s);
    const RecordedCall write = call(What::Write);
    const RecordedCall syncFile = call(What::SyncFile);
    const RecordedCall rename = call(What::Rename, u"t"_s, u"a"_s);
    const RecordedCall syncFolder = call(What::SyncFolder);
    using Calls = std::vector<RecordedCall>;
    row("a save without any sync", Calls{create, write, rename},
        QStringList{u"a="_s, u"a=byt"_s, u"a=bytes!"_s, u"a=old"_s, u"a=old t="_s, u"a=old t=byt"_s,
                    u"a=old t=bytes!"_s});
    row("a save whose file is synced", Calls{create, write, syncFile, rename},
        QStringList{u"a=bytes!"_s, u"a=old"_s, u"a=old t=bytes!"_s});
    row("a save whose folder is synced", Calls{create, write, syncFile, rename, syncFolder},
        QStringList{u"a=bytes!"_s});
    row("a move into a folder that is not synced, and back",
        Calls{call(What::MakeFolder, u"f"_s), call(What::Rename, u"a"_s, u"f/a"_s),
              call(What::SyncFolder, u"f"_s), call(What::Rename, u"f/a"_s, u"b"_s)},
        QStringList{QString(), u"a=old"_s, u"a=old f/"_s, u"b=old"_s, u"b=old f/"_s, u"f/ f/a=old"_s});
    row("a folder that is emptied and removed",
        Calls{call(What::MakeFolder, u"f"_s), syncFolder, call(What::Rename, u"a"_s, u"f/a"_s), syncFolder,
              call(What::SyncFolder, u"f"_s), call(What::RemoveFile, u"f/a"_s),
              call(What::RemoveFolder, u"f"_s)},
        QStringList{QString(), u"f/"_s, u"f/ f/a=old"_s});
}

void TestPowerCut::whatTheModelFinds()
{
    QFETCH(const std::vector<RecordedCall>, calls);
    QFETCH(const QStringList, found);
    DiskModel model({{u"a"_s, "old"_qba}});
    for (const RecordedCall &next : calls)
        model.apply(next);
    std::set<QString> trees;
    model.visitTrees(Seed, [&](const TreeImage &tree) {
        QStringList items;
        for (const auto &[path, bytes] : tree)
            items.append(path + (bytes ? u'=' + QString::fromUtf8(*bytes) : u"/"_s));
        trees.insert(items.join(u' '));
    });
    QCOMPARE(QStringList(trees.begin(), trees.end()), found);
}

void TestPowerCut::nothingIsLost_data()
{
    QTest::addColumn<size_t>("number");
    for (size_t number = 0; number < scenarios().size(); ++number)
        QTest::newRow(scenarios()[number].name) << number;
}

void TestPowerCut::nothingIsLost()
{
    QFETCH(const size_t, number);
    const Scenario &scenario = scenarios()[number];
    RecordingFileOperations recording(FileOperations::system());
    StoreRig rig(StoreRig::Place::Local, recording);
    const QString root = rig.root().path();
    QVERIFY(writeTree(OpenStore::initialTree(), root));
    OpenStore store(rig);
    if (scenario.isBetweenFileSystems)
        recording.setOtherFileSystem(
            root + (scenario.isToSecondStore ? u'/' + SecondStore.toString() : u"/ArchivedUsers"_s));
    scenario.prepare(store);
    const TreeImage before = readTree(root);
    recording.start(root);
    scenario.act(store, [&recording] { recording.noteDone(); });
    rig.settle();
    recording.noteDone();

    QCOMPARE(!hasUsers(root), scenario.isToSecondStore);

    DiskModel model(before);
    Judge judge(scenario, before, readTree(root));
    StoreListing expected = judge.listingBefore();
    scenario.change(expected);
    QCOMPARE(difference(judge.listingAfter(), expected), QString());
    // What another program has put there is listed after the next load only.
    QVERIFY(contains(expected, withPlainNames(listingOf(*store.storage, rig.disk))));

    bool isDone = false;
    QString fault;
    const auto visit = [&](const TreeImage &tree) {
        ++_cuts;
        if (fault.isNull())
            fault = judge.fault(tree, isDone);
    };
    model.visitTrees(Seed, visit);
    size_t mostPending = 0;
    for (const RecordedCall &next : recording.calls()) {
        model.apply(next);
        mostPending = std::max(mostPending, model.pendingCount());
        isDone = isDone || next.what == RecordedCall::What::Done;
        model.visitTrees(Seed, visit);
        if (!fault.isNull())
            break;
    }
    QVERIFY2(fault.isNull(), qPrintable(fault));
    // Else a call was not recorded, or the model has it wrong.
    QCOMPARE(describe(model.current()), describe(readTree(root)));
    std::printf("    %3zu calls, at most %2zu not durable, %5zu trees: %s\n", recording.calls().size(),
                mostPending, judge.treeCount(), scenario.name);
    _trees += judge.treeCount();
}

void TestPowerCut::cleanupTestCase()
{
    std::printf("%zu ways to lose power gave %zu different trees, and each was opened.\n", _cuts, _trees);
}

QTEST_GUILESS_MAIN(TestPowerCut)
#include "tst_powercut.moc"
