// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ContainerList.h"

#include <QRandomGenerator>
#include <QTest>

using namespace cvtamber;

namespace {

struct Thing
{
    QString title;
    FileURL place;

    const QString &name() const { return title; }
    const FileURL &url() const { return place; }
};
using ThingPointer = std::shared_ptr<Thing>;

struct Listener
{
    void added(StoreIndex index) { heard.append(index); }
    void deleted(StoreIndex index) { heard.append(-index); }

    QList<StoreIndex> heard;
};
using Things = ToldList<Thing, Listener, &Listener::added, &Listener::deleted>;

ThingPointer thing(const QString &name)
{
    return std::make_shared<Thing>(Thing{name, FileURL::file(u"/store/" + name)});
}

QStringList names(const Things &list)
{
    QStringList all;
    for (const ThingPointer &item : list.items())
        all.append(item->title);
    return all;
}

// What sorting the whole list each time gives; names that differ in letter case only have no order.
QStringList sorted(QStringList names)
{
    for (QString &name : names)
        name = name.toCaseFolded();
    names.sort();
    return names;
}

// From few letters, so that many are equal but for their case.
QString randomName(QRandomGenerator &random)
{
    QString name;
    for (int i = 0; i < 2; ++i)
        name += QStringView(u"aAbBcé\u00C9\xD83D")[random.bounded(8)];
    return name;
}

} // namespace

class tst_ContainerList : public QObject
{
    Q_OBJECT

private slots:
    void listsAsIfSortedEachTime();
    void keepsTheOrderOfAppendingUntilAnInsertion();
    void findsWhatHasChangedItsNameOrPlace();
    void tellsTheDelegateAfterEachChange();
};

void tst_ContainerList::listsAsIfSortedEachTime()
{
    const quint32 seed = qEnvironmentVariableIntValue("CVTAMBER_SEED") > 0
                             ? static_cast<quint32>(qEnvironmentVariableIntValue("CVTAMBER_SEED"))
                             : 4711;
    QRandomGenerator random(seed);
    Things list;
    std::vector<ThingPointer> plain;
    for (int step = 0; step < 800; ++step) {
        const auto any = plain.empty() ? 0 : static_cast<size_t>(random.bounded(int(plain.size())));
        const int choice = random.bounded(10);
        if (choice < 5 || plain.empty()) {
            plain.push_back(thing(randomName(random)));
            const StoreIndex index = list.insertSorted(plain.back());
            QCOMPARE(list.at(index), plain.back());
        } else if (choice < 8) {
            QVERIFY(list.removeAndTell(plain[any].get()));
            plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(any));
        } else if (choice == 8) {
            plain[any]->title = randomName(random);
            list.nameChanged();
            list.sort();
        } else {
            const StoreIndex found = list.indexOfURL(plain[any]->url());
            QCOMPARE(list.at(found)->url(), plain[any]->url());
        }
        QStringList expected;
        for (const ThingPointer &item : plain) {
            expected.append(item->title);
            QVERIFY2(list.at(list.indexOf(item.get())) == item, qPrintable(QString::number(seed)));
        }
        QStringList found = names(list);
        for (QString &name : found)
            name = name.toCaseFolded();
        QVERIFY2(found == sorted(expected),
                 qPrintable(QStringLiteral("seed %1 step %2").arg(seed).arg(step)));
    }
}

void tst_ContainerList::keepsTheOrderOfAppendingUntilAnInsertion()
{
    Things list;
    for (const QString &name : {u"c"_qs, u"A"_qs, u"b"_qs})
        list.append(thing(name));
    QCOMPARE(names(list), QStringList({u"c"_qs, u"A"_qs, u"b"_qs}));
    QCOMPARE(list.insertSorted(thing(u"B2"_qs)), 2);
    QCOMPARE(names(list), QStringList({u"A"_qs, u"b"_qs, u"B2"_qs, u"c"_qs}));
}

void tst_ContainerList::findsWhatHasChangedItsNameOrPlace()
{
    Things list;
    const ThingPointer first = thing(u"a"_qs);
    for (const ThingPointer &item : {first, thing(u"b"_qs), thing(u"c"_qs)})
        list.insertAndTell(item);
    QCOMPARE(list.indexOfURL(first->url()), 0);
    first->title = u"z"_qs;
    QCOMPARE(list.indexOf(first.get()), 0);
    first->place = FileURL::file(u"/store/z"_qs);
    // The entry under the old URL must not outlive the item.
    list.removeAt(0);
    QCOMPARE(list.indexOfURL(FileURL::file(u"/store/a"_qs)), NotFound);
    QCOMPARE(list.indexOf(first.get()), NotFound);
    QCOMPARE(list.indexOf(nullptr), NotFound);
    QCOMPARE(list.indexOfURL(FileURL::file(u"/store/c"_qs)), 1);
}

void tst_ContainerList::tellsTheDelegateAfterEachChange()
{
    Things list;
    const auto listener = std::make_shared<Listener>();
    list.listeners().setDelegate(listener);
    const ThingPointer last = thing(u"last"_qs);
    list.insertAndTell(last);
    list.insertAndTell(thing(u"first"_qs));
    list.insertAndTell(thing(u"second"_qs));
    QVERIFY(list.removeAndTell(last.get()));
    QVERIFY(!list.removeAndTell(last.get()));
    QCOMPARE(listener->heard, QList<StoreIndex>({0, 0, 2, -1}));
}

QTEST_APPLESS_MAIN(tst_ContainerList)
#include "tst_containerlist.moc"
