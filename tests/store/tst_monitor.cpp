// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/OrphanedItems.h"
#include "store/TamberUbiquitousFolderMonitor.h"
#include "support/Rows.h"
#include "support/StoreRig.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

using State = TamberUbiquitousItem::State;
using Monitor = TamberUbiquitousFolderMonitor;

// Writes each report down, as "+name", "-name", "downloaded name", "again name", "gathered n"; `react` runs
// after each.
class Listener final : public TamberUbiquitousFolderMonitorDelegate
{
public:
    void ubiquitousMonitorItemAdded(Monitor &monitor, const Item &item) override
    {
        tell(monitor, u"+"_s, item);
    }
    void ubiquitousMonitorItemDeleted(Monitor &monitor, const Item &item) override
    {
        tell(monitor, u"-"_s, item);
    }
    void ubiquitousMonitorItemDownloaded(Monitor &monitor, const Item &item) override
    {
        tell(monitor, u"downloaded "_s, item);
    }
    void ubiquitousMonitorItemDownloadedAgain(Monitor &monitor, const Item &item) override
    {
        tell(monitor, u"again "_s, item);
    }
    void ubiquitousMonitorContentGathered(Monitor &monitor, const TamberUbiquitousItems &items) override
    {
        tell(monitor, u"gathered %1"_s.arg(items.size()), nullptr);
    }

    QStringList take() { return std::exchange(heard, {}); }

    QStringList heard;
    std::function<void(Monitor &, const QString &line)> react;

private:
    void tell(Monitor &monitor, const QString &what, const Item &item)
    {
        const QString line = item ? QString(what % item->url().lastPathComponent()) : what;
        heard.append(line);
        if (react)
            react(monitor, line);
    }
};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u", "_s, Qt::SkipEmptyParts);
}

} // namespace

class TestMonitor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void statesOfAnItem_data();
    void statesOfAnItem();
    void whatAnItemKnows();
    void orderOfOnePass();
    void deletedItemsLeaveOneByOne();
    void aPassThatIsCutShort_data();
    void aPassThatIsCutShort();
    void updatesAreHeldBackWhileResultsAreProcessed();
    void startAndStop();
    void scopeAndDirectory_data();
    void scopeAndDirectory();
    void checkIfDeletedOnlyReports();
    void manyItems();
    void orphansBelowAPath_data();
    void orphansBelowAPath();

private:
    FileURL item(const QString &name) const { return _rig->file(u"Docs/"_s + name); }
    void watch(const QString &filter = u"*"_s);

    std::unique_ptr<StoreRig> _rig;
    std::shared_ptr<Monitor> _monitor;
    std::shared_ptr<Listener> _listener;
};

void TestMonitor::init()
{
    _rig = std::make_unique<StoreRig>(StoreRig::Place::Cloud);
    _listener = std::make_shared<Listener>();
}

void TestMonitor::cleanup()
{
    _monitor.reset();
    QCOMPARE(_rig->cloud.queriesStarted(), 0);
    _rig.reset();
}

void TestMonitor::watch(const QString &filter)
{
    _monitor = std::make_shared<Monitor>(_rig->context, _rig->directory(u"Docs"_s), filter);
    _monitor->setDelegate(_listener);
    _monitor->startMonitoring();
}

// Each column after the first is the state at one more look, "." for an item that is not listed.
void TestMonitor::statesOfAnItem_data()
{
    columns<QList<int>, QStringList>("states", "reports");
    const auto looks = [](std::initializer_list<int> states) { return QList<int>(states); };
    row("placeholder, downloaded once", looks({0, State::Downloading, State::Downloaded, State::Downloaded}),
        words("+x, downloaded x"));
    row("first seen downloaded is never downloaded for the first time", looks({1, 0, 1}),
        words("+x, again x"));
    row("again and again", looks({0, 1, 0, 1, State::Downloading, 3, 2, 1}),
        words("+x, downloaded x, again x, again x, again x"));
    row("other bits are silent", looks({1, 3, 9, 17, 31, 5}), words("+x"));
    row("other bits of a placeholder are silent", looks({0, 2, 8, 16, 30}), words("+x"));
    row("deleted is forgotten", looks({1, -1, 0, 1}), words("+x, -x, +x, downloaded x"));
    row("deleted before it was downloaded", looks({0, -1, -1}), words("+x, -x"));
    row("never there", looks({-1, -1}), words(""));
}

void TestMonitor::statesOfAnItem()
{
    QFETCH(const QList<int>, states);
    QFETCH(QStringList, reports);
    watch();
    for (const int state : states) {
        if (state < 0)
            _rig->cloud.removeItem(item(u"x"_s));
        else
            _rig->cloud.setItem(item(u"x"_s), state);
        _rig->cloud.gather();
        _rig->cloud.update();
    }
    QStringList heard = _listener->take();
    QCOMPARE(heard.removeIf([](const QString &line) { return line.startsWith(u"gathered"); }), 1);
    QCOMPARE(heard, reports);
}

void TestMonitor::whatAnItemKnows()
{
    watch();
    const QDateTime date(QDate(2026, 11, 23), QTime(10, 0), Qt::UTC);
    _rig->cloud.setItem(item(u"x"_s), State::Uploaded | State::Downloading, 70).contentChangeDate = date;
    _rig->cloud.gather();
    const auto known = _monitor->findItemWithURL(item(u"x"_s));
    QVERIFY(known);
    QVERIFY(!_monitor->findItemWithURL(_rig->directory(u"Docs/x"_s)));
    QCOMPARE(known->state(), 6);
    QVERIFY(!known->wasDownloaded());
    QCOMPARE(known->size(), 70U);
    QCOMPARE(known->dateChanged(), date);

    bool wasDownloaded = true;
    _listener->react = [&](Monitor &, const QString &) { wasDownloaded = known->wasDownloaded(); };
    _rig->cloud.setItem(item(u"x"_s), State::Downloaded, 71);
    _rig->cloud.update();
    QVERIFY(!wasDownloaded);
    QVERIFY(known->wasDownloaded());
    QCOMPARE(known->size(), 71U);
    QCOMPARE(_monitor->findItemWithURL(item(u"x"_s)), known);
}

void TestMonitor::orderOfOnePass()
{
    watch();
    for (const char16_t name : u"abcd"_s.toStdU16String())
        _rig->cloud.setItem(item(QChar(name)), name == u'c' ? 0 : 1);
    _rig->cloud.gather();
    QCOMPARE(_listener->take(), words("+a, +b, +c, +d, gathered 4"));

    // Reported in the query's order, which is not that of the first sight; then the newest of those that went.
    QList<MetadataItem> &items = _rig->cloud.items();
    items = {items[2]};
    items[0].isDownloaded = true;
    _rig->cloud.setItem(item(u"f"_s));
    _rig->cloud.setItem(item(u"e"_s));
    items.move(2, 0);
    _rig->cloud.update();
    QCOMPARE(_listener->take(), words("+e, downloaded c, +f, -d, -b, -a"));
    QStringList left;
    for (const auto &one : _monitor->items())
        left.append(one->url().lastPathComponent());
    QCOMPARE(left, words("c, e, f"));
}

void TestMonitor::deletedItemsLeaveOneByOne()
{
    watch();
    for (const char16_t name : u"abcde"_s.toStdU16String())
        _rig->cloud.setItem(item(QChar(name)));
    _rig->cloud.gather();
    _listener->take();
    QStringList seen;
    _listener->react = [&](Monitor &monitor, const QString &line) {
        QString names;
        for (const auto &one : monitor.items())
            names += one->url().lastPathComponent();
        seen.append(line + u' ' + names +
                    (monitor.findItemWithURL(item(line.sliced(1))) ? u""_s : u" lost"_s));
    };
    for (const char16_t name : u"ace"_s.toStdU16String())
        _rig->cloud.removeItem(item(QChar(name)));
    _rig->cloud.update();
    QCOMPARE(seen, words("-e abcde, -c abcd, -a abd"));
    QCOMPARE(_monitor->items().size(), 2U);
}

void TestMonitor::aPassThatIsCutShort_data()
{
    columns<QString, QString, QStringList>("at", "what", "reports");
    row("stopped by an addition", u"+c"_s, u"stop"_s, words("+c"));
    row("stopped by a deletion", u"-b"_s, u"stop"_s, words("+c, +d, -b"));
    row("stopped by the last report", u"-a"_s, u"stop"_s, words("+c, +d, -b, -a"));
    row("dropped by an addition", u"+c"_s, u"drop"_s, words("+c"));
    row("dropped by a deletion", u"-b"_s, u"drop"_s, words("+c, +d, -b"));
    row("started anew", u"+c"_s, u"restart"_s, words("+c"));
    row("nobody listens any more", u"-b"_s, u"mute"_s, words("+c, +d, -b"));
}

void TestMonitor::aPassThatIsCutShort()
{
    QFETCH(const QString, at);
    QFETCH(const QString, what);
    QFETCH(const QStringList, reports);
    watch();
    _rig->cloud.setItem(item(u"a"_s));
    _rig->cloud.setItem(item(u"b"_s));
    _rig->cloud.gather();
    _listener->take();
    _listener->react = [&](Monitor &monitor, const QString &line) {
        if (line != at)
            return;
        if (what == u"drop")
            _monitor.reset();
        else if (what == u"mute")
            monitor.setDelegate({});
        else
            monitor.stopMonitoring();
        if (what == u"restart")
            monitor.startMonitoring();
    };
    _rig->cloud.items().clear();
    _rig->cloud.setItem(item(u"c"_s));
    _rig->cloud.setItem(item(u"d"_s));
    _rig->cloud.update();
    _rig->settle();
    QCOMPARE(_listener->take(), reports);
    QCOMPARE(_rig->loop.pendingCalls(), 0U);
    QCOMPARE(_rig->cloud.queriesStarted(), what == u"restart" || what == u"mute" ? 1 : 0);
    if (what == u"mute" || !_monitor)
        return;

    // What the pass did not come to is found by the next.
    _monitor->startMonitoring();
    _rig->cloud.gather();
    QStringList all = reports + _listener->take();
    all.removeIf([](const QString &line) { return line.startsWith(u"gathered"); });
    QCOMPARE(all, words("+c, +d, -b, -a"));
}

void TestMonitor::updatesAreHeldBackWhileResultsAreProcessed()
{
    watch();
    _rig->cloud.setItem(item(u"a"_s));
    _rig->cloud.setItem(item(u"b"_s));
    _listener->react = [&](Monitor &, const QString &line) {
        if (line != u"+a")
            return;
        _rig->cloud.removeItem(item(u"b"_s));
        _rig->cloud.setItem(item(u"c"_s));
        _rig->cloud.update();
        _rig->cloud.update();
    };
    _rig->cloud.gather();
    QCOMPARE(_listener->take(), words("+a, +b, gathered 2"));
    _rig->settle();
    QCOMPARE(_listener->take(), words("+c, -b"));
    QCOMPARE(_rig->loop.pendingCalls(), 0U);
}

void TestMonitor::startAndStop()
{
    watch(u"*.tamber"_s);
    QCOMPARE(_rig->cloud.queriesMade(), 1);
    _monitor->startMonitoring();
    QCOMPARE(_rig->cloud.queriesMade(), 1);
    QVERIFY(!_monitor->contentGathered());
    _rig->cloud.setItem(item(u"a.tamber"_s));
    _rig->cloud.setItem(item(u"a.txt"_s));
    _rig->cloud.setItem(_rig->file(u"Other/b.tamber"_s));
    _rig->cloud.gather();
    QCOMPARE(_listener->take(), words("+a.tamber, gathered 1"));
    QVERIFY(_monitor->contentGathered());

    _monitor->stopMonitoring();
    _monitor->stopMonitoring();
    _rig->cloud.setItem(item(u"c.tamber"_s));
    _rig->cloud.update();
    QCOMPARE(_listener->take(), QStringList());
    QVERIFY(_monitor->contentGathered());

    _monitor->startMonitoring();
    _rig->cloud.gather();
    QCOMPARE(_listener->take(), words("+c.tamber, gathered 2"));
    QCOMPARE(_rig->cloud.queriesMade(), 1);
}

void TestMonitor::scopeAndDirectory_data()
{
    columns<QString, QString>("directory", "scope");
    row("the documents themselves", u"Documents"_s, u"documents"_s);
    row("below the documents", u"Documents/ActiveUsers"_s, u"documents"_s);
    row("beside the documents", u"Data"_s, u"data"_s);
    row("only the path's beginning counts", u"Documents2"_s, u"documents"_s);
    row("outside the container", u"../Documents"_s, u"exception"_s);
    row("beginning like the container", u"../Cloud2"_s, u"exception"_s);
}

void TestMonitor::scopeAndDirectory()
{
    QFETCH(const QString, directory);
    QFETCH(const QString, scope);
    const QString path = QDir::cleanPath(_rig->cloud.url().path() + u'/' + directory);
    try {
        _monitor = std::make_shared<Monitor>(_rig->context, FileURL::directory(path), u"*"_s);
        _monitor->startMonitoring();
        QCOMPARE(_rig->cloud.scope() == MetadataQuery::Scope::Documents ? u"documents"_s : u"data"_s, scope);
    } catch (const TamberUbiquitousFolderMonitorException &exception) {
        QCOMPARE(scope, u"exception"_s);
        QCOMPARE(exception.what(), "parent property must be an ubiquitous item");
        QCOMPARE(exception.name(), "TamberUbiquitousFolderMonitor exception");
    }
}

void TestMonitor::checkIfDeletedOnlyReports()
{
    watch();
    _rig->put(u"Docs/here"_s, "text");
    _rig->put(u"Docs/.placeholder.icloud"_s, "");
    for (const char *name : {"here", "placeholder", "gone"})
        _rig->cloud.setItem(item(QString::fromLatin1(name)), 0);
    _rig->cloud.gather();
    _listener->take();
    const auto items = _monitor->items();
    for (const auto &one : items)
        _monitor->checkIfDeleted(one);
    QCOMPARE(_listener->take(), words("-gone"));
    QCOMPARE(_monitor->items(), items);
}

// Quadratic work, in any of the three passes, would hold the test up far beyond its time limit.
void TestMonitor::manyItems()
{
    constexpr int Count = 100'000;
    watch();
    QList<MetadataItem> &items = _rig->cloud.items();
    for (int i = 0; i < Count; ++i)
        items.append({item(QString::number(i)), 0, {}});
    _rig->cloud.gather();
    QCOMPARE(_monitor->items().size(), size_t(Count));
    for (MetadataItem &one : items)
        one.isDownloaded = true;
    _rig->cloud.update();
    bool isOdd = false;
    items.removeIf([&](const MetadataItem &) { return isOdd = !isOdd; });
    _rig->cloud.update();
    QCOMPARE(_monitor->items().size(), size_t(Count / 2));
    QCOMPARE(_listener->heard.size(), Count + 1 + Count + Count / 2);
    QCOMPARE(_listener->heard.last(), u"-0"_s);
    QCOMPARE(_monitor->items().front()->url(), item(u"1"_s));
}

void TestMonitor::orphansBelowAPath_data()
{
    columns<QString, QStringList, QStringList>("prefix", "taken", "left");
    row("a folder's", u"/u/B"_s, words("/u/B2/z, /u/B/x, /u/B/y"), words("/u/A/z, /u/b/x, /u/A/a"));
    row("with its separator", u"/u/B/"_s, words("/u/B/x, /u/B/y"), words("/u/A/z, /u/b/x, /u/A/a, /u/B2/z"));
    row("the last added first", u"/u/A"_s, words("/u/A/a, /u/A/z"), words("/u/B/y, /u/B/x, /u/b/x, /u/B2/z"));
    row("an item itself", u"/u/B/x"_s, words("/u/B/x"), words("/u/A/z, /u/B/y, /u/b/x, /u/A/a, /u/B2/z"));
    row("nothing", u"/u/C"_s, words(""), words("/u/A/z, /u/B/y, /u/B/x, /u/b/x, /u/A/a, /u/B2/z"));
    row("longer than any", u"/u/B2/zz"_s, words(""),
        words("/u/A/z, /u/B/y, /u/B/x, /u/b/x, /u/A/a, /u/B2/z"));
}

void TestMonitor::orphansBelowAPath()
{
    QFETCH(const QString, prefix);
    QFETCH(const QStringList, taken);
    QFETCH(QStringList, left);
    OrphanedItems orphans;
    for (const QString &path : words("/u/A/z, /u/B/y, /u/B/x, /u/b/x, /u/A/a, /u/B2/z"))
        orphans.add(std::make_shared<TamberUbiquitousItem>(FileURL::file(path)));
    const auto paths = [](const TamberUbiquitousItems &items) {
        QStringList list;
        for (const auto &one : items)
            list.append(one->url().path());
        return list;
    };
    QCOMPARE(paths(orphans.withPathPrefix(prefix)), taken);
    QCOMPARE(paths(orphans.takeWithPathPrefix(prefix)), taken);
    QCOMPARE(paths(orphans.takeWithPathPrefix(prefix)), QStringList());
    std::reverse(left.begin(), left.end());
    QCOMPARE(paths(orphans.takeWithPathPrefix(u"/"_s)), left);
    QVERIFY(orphans.isEmpty());

    const auto file = FileURL::file(u"/u/B"_s);
    for (const FileURL &url : {file, FileURL::directory(u"/u/B"_s), file, FileURL::file(u"/u/B2"_s)})
        orphans.add(std::make_shared<TamberUbiquitousItem>(url));
    orphans.remove(file);
    QCOMPARE(paths(orphans.withPathPrefix(u"/"_s)), words("/u/B2, /u/B"));
}

QTEST_GUILESS_MAIN(TestMonitor)
#include "tst_monitor.moc"
