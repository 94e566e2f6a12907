// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/NavigationController.h"
#include "ui/TabBarController.h"
#include "ui/ViewController.h"

#include <QStringList>

#include <functional>
#include <utility>

namespace cvtamber {

// Screens that write their life into one list, as "name.Event", and do at an event what the test wants.
struct LifeLog
{
    QStringList lines;
    QString hookedLine;
    std::function<void()> hook;

    void add(const QString &name, const char *event)
    {
        lines.append(name + QLatin1Char('.') + QLatin1String(event));
        if (lines.last() == hookedLine)
            std::exchange(hook, nullptr)();
    }
    QString taken() { return std::exchange(lines, {}).join(QLatin1Char(' ')); }
};

template<typename Base> class RecordingScreen : public Base
{
public:
    RecordingScreen(Presenter &presenter, LifeLog &log, const QString &name)
        : Base(presenter)
        , _log(log)
        , _name(name)
    {}

protected:
    void viewDidLoad() override { _log.add(_name, "load"); }
    void viewWillAppear() override { _log.add(_name, "willAppear"); }
    void viewDidAppear() override { _log.add(_name, "didAppear"); }
    void viewWillDisappear() override { _log.add(_name, "willDisappear"); }
    void viewDidDisappear() override { _log.add(_name, "didDisappear"); }
    void detailDidChange() override { _log.add(_name, "detail"); }

private:
    LifeLog &_log;
    QString _name;
};

using PlainScreen = RecordingScreen<ViewController>;

} // namespace cvtamber
