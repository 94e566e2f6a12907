// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NotificationCenter.h"

#include <QTest>

#include <memory>

using namespace cvtamber;
using namespace Qt::StringLiterals;

class TestNotificationCenter : public QObject
{
    Q_OBJECT

private slots:
    void nameAndObjectChooseTheObservers();
    void observersChangeDuringAPost();

private:
    // An observer that writes its letter down.
    NotificationCenter::Observer writing(const QString &letter)
    {
        return [this, letter](const Notification &) { _heard += letter; };
    }

    QString _heard;
};

void TestNotificationCenter::nameAndObjectChooseTheObservers()
{
    const int one = 1;
    const int other = 2;
    NotificationCenter center;
    center.addObserver(u"added"_s, writing(u"a"_s));
    center.addObserver(u"added"_s, writing(u"b"_s), &one);
    center.addObserver(u"gone"_s, writing(u"c"_s));
    const auto last = center.addObserver(
        u"added"_s, [this](const Notification &n) { _heard += n.userInfo[u"key"_s].toString(); });

    const auto heardOf = [&](const QString &name, const void *object) {
        _heard.clear();
        center.post({name, object, {{u"key"_s, u"!"_s}}});
        return _heard;
    };
    QCOMPARE(heardOf(u"added"_s, &one), u"ab!"_s);
    QCOMPARE(heardOf(u"added"_s, &other), u"a!"_s);
    QCOMPARE(heardOf(u"added"_s, nullptr), u"a!"_s);
    QCOMPARE(heardOf(u"gone"_s, &one), u"c"_s);
    QCOMPARE(heardOf(u"Added"_s, &one), QString());
    center.removeObserver(last);
    center.removeObserver(last);
    center.removeObserver(NotificationCenter::ObserverId::None);
    QCOMPARE(heardOf(u"added"_s, &one), u"ab"_s);
}

void TestNotificationCenter::observersChangeDuringAPost()
{
    NotificationCenter center;
    NotificationCenter::ObserverId self{};
    NotificationCenter::ObserverId next{};
    // Captured text shows whether the running observer outlives its own removal.
    self = center.addObserver(u"n"_s, [&, mark = std::make_shared<QString>(u"x"_s)](const Notification &) {
        center.removeObserver(self);
        center.removeObserver(next);
        center.addObserver(u"n"_s, writing(u"new "_s));
        center.post({u"inner"_s, nullptr, {}});
        _heard += *mark;
    });
    next = center.addObserver(u"n"_s, writing(u"removed "_s));
    center.addObserver(u"n"_s, writing(u"last "_s));
    center.addObserver(u"inner"_s, writing(u"inner "_s));

    _heard.clear();
    center.post({u"n"_s, nullptr, {}});
    QCOMPARE(_heard, u"inner xlast "_s);
    _heard.clear();
    center.post({u"n"_s, nullptr, {}});
    QCOMPARE(_heard, u"last new "_s);
}

QTEST_GUILESS_MAIN(TestNotificationCenter)
#include "tst_NotificationCenter.moc"
