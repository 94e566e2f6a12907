// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EventRunLoop.h"
#include "support/ManualRunLoop.h"

#include <QDeadlineTimer>
#include <QTest>

#include <memory>

using namespace cvtamber;
using namespace std::chrono_literals;

namespace {

// A run loop of either kind, and how to let its time pass.
struct Fixture
{
    std::unique_ptr<RunLoop> loop;
    std::function<bool(const std::function<bool()> &)> runUntil;
};

Fixture makeFixture(bool manual)
{
    if (manual) {
        auto loop = std::make_unique<ManualRunLoop>();
        auto *raw = loop.get();
        return {std::move(loop), [raw](const auto &condition) { return raw->advanceUntil(condition, 10s); }};
    }
    return {std::make_unique<EventRunLoop>(), [](const auto &condition) {
                const QDeadlineTimer deadline(10s);
                while (!condition() && !deadline.hasExpired())
                    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
                return condition();
            }};
}

} // namespace

class tst_RunLoop : public QObject
{
    Q_OBJECT

private:
    Fixture _fixture;
    RunLoop *_loop = nullptr;
    QString _order;

    RunLoop::Callback append(QChar letter)
    {
        return [this, letter] { _order += letter; };
    }

    bool runUntil(const std::function<bool()> &condition) { return _fixture.runUntil(condition); }

private slots:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("manual");
        QTest::newRow("manual") << true;
        QTest::newRow("event") << false;
    }

    void init()
    {
        QFETCH_GLOBAL(bool, manual);
        _fixture = makeFixture(manual);
        _loop = _fixture.loop.get();
        _order.clear();
    }

    void runsLaterAndInOrder()
    {
        const auto start = _loop->now();
        auto ranAt = start;
        _loop->performAfter(30ms, [&] {
            _order += u'd';
            ranAt = _loop->now();
        });
        _loop->performAfter(0ns, append(u'a'));
        _loop->performAfter(-5s, append(u'b'));
        _loop->performAfter(0ns, append(u'c'));
        QCOMPARE(_order, QString());
        QVERIFY(runUntil([&] { return _order.size() == 4; }));
        QCOMPARE(_order, QStringLiteral("abcd"));
        QVERIFY(ranAt - start >= 30ms);
    }

    void cancelledCallsStayAway()
    {
        const auto own = _loop->performAfter(5ms, append(u'x'));
        RunLoop::CallId second{};
        _loop->performAfter(1ms, [&] {
            _order += u'a';
            _loop->cancel(second);
            _loop->cancel(own);
        });
        second = _loop->performAfter(1ms, append(u'x'));
        _loop->performAfter(10ms, append(u'b'));
        _loop->cancel(RunLoop::CallId::None);
        _loop->cancel(RunLoop::CallId{12345});
        QVERIFY(runUntil([&] { return _order.contains(u'b'); }));
        QCOMPARE(_order, QStringLiteral("ab"));
    }

    void anIdThatHasRunIsIgnored()
    {
        auto first = RunLoop::CallId::None;
        first = _loop->performAfter(0ns, [&] {
            _loop->cancel(first);
            _order += u'a';
        });
        QVERIFY(runUntil([&] { return !_order.isEmpty(); }));
        const auto next = _loop->performAfter(0ns, append(u'b'));
        QVERIFY(next != first && next != RunLoop::CallId::None);
        _loop->cancel(first);
        QVERIFY(runUntil([&] { return _order == QStringLiteral("ab"); }));
    }

    void aCallMayAskForMore()
    {
        int left = 50;
        std::function<void()> again = [&] {
            if (--left > 0)
                _loop->performAfter(0ns, again);
        };
        again();
        QCOMPARE(left, 49);
        _loop->performAfter(1ms, append(u'z'));
        QVERIFY(runUntil([&] { return left == 0 && !_order.isEmpty(); }));
    }

    void anEarlierCallOvertakesALaterOne()
    {
        _loop->performAfter(24h * 60, append(u'x'));
        const auto late = _loop->performAfter(20ms, append(u'b'));
        _loop->performAfter(1ms, append(u'a'));
        QVERIFY(runUntil([&] { return _order.contains(u'b'); }));
        QCOMPARE(_order, QStringLiteral("ab"));
        _loop->cancel(late);
    }
};

// What only a loop over Qt's has: other events between its calls, and loops inside a call.
class tst_EventRunLoop : public QObject
{
    Q_OBJECT

private slots:
    void immediateCallsLeaveRoomForEvents()
    {
        EventRunLoop loop;
        bool eventSeen = false;
        std::function<void()> again = [&] { loop.performAfter(0ns, again); };
        again();
        QTimer::singleShot(0, this, [&] { eventSeen = true; });
        const QDeadlineTimer deadline(10s);
        while (!eventSeen && !deadline.hasExpired())
            QCoreApplication::processEvents();
        QVERIFY(eventSeen);
    }

    void runsInsideANestedEventLoop()
    {
        EventRunLoop loop;
        QEventLoop inner;
        bool innerLeft = false;
        loop.performAfter(0ns, [&] {
            loop.performAfter(1ms, [&] { inner.quit(); });
            inner.exec();
            innerLeft = true;
        });
        const QDeadlineTimer deadline(10s);
        while (!innerLeft && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QVERIFY(innerLeft);
    }

    void theLongestDelayIsNoEarlyOne()
    {
        EventRunLoop loop;
        bool ran = false;
        bool done = false;
        loop.performAfter(std::chrono::nanoseconds::max(), [&] { ran = true; });
        loop.performAfter(2ms, [&] { done = true; });
        const QDeadlineTimer deadline(10s);
        while (!done && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QVERIFY(done && !ran);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    tst_RunLoop contract;
    tst_EventRunLoop events;
    const int failed = QTest::qExec(&contract, argc, argv);
    return failed + QTest::qExec(&events, argc, argv);
}
#include "tst_RunLoop.moc"
