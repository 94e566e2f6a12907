// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RecordingScreens.h"

#include "support/ManualRunLoop.h"
#include "support/RecordingPresenter.h"

#include <map>

namespace cvtamber {

// Two tabs: "N", a navigation with the screen "R" at its root, and the screen "S"; "A" to "D" wait to be shown.
struct ScreenBench
{
    explicit ScreenBench(bool isTablet = false)
    {
        presenter.setTablet(isTablet);
        for (const auto *name : {"R", "S", "A", "B", "C", "D"}) {
            const auto key = QLatin1String(name);
            screens.emplace(key, std::make_shared<PlainScreen>(presenter, log, key));
        }
        navigation = NavigationController::withRoot(presenter, at("R"));
        tabs = std::make_shared<TabBarController>(presenter);
        tabs->setTabs({{navigation, {}}, {at("S"), {}}});
        presenter.showRoot(tabs);
    }

    const std::shared_ptr<PlainScreen> &at(const char *name) const { return screens.at(QLatin1String(name)); }
    const std::shared_ptr<PlainScreen> &at(const QString &name) const { return screens.at(name); }

    ViewController::Completion completion()
    {
        return [this] { log.lines.append(QStringLiteral("completed")); };
    }

    // One word of a script: what somebody asks for, "end" of an animation, or a turn of the "loop".
    bool run(const QString &word)
    {
        const auto parts = word.split(QLatin1Char(':'));
        const auto &verb = parts.first();
        if (verb == QLatin1String("present") || verb == QLatin1String("sheet"))
            present(parts.at(1), parts.at(2), verb == QLatin1String("sheet"));
        else if (verb == QLatin1String("dismiss"))
            at(parts.at(1))->dismissViewController(true, completion());
        else if (verb == QLatin1String("push"))
            navigation->pushViewController(at(parts.at(1)), true);
        else if (verb == QLatin1String("show"))
            navigation->showDetail(at(parts.at(1)));
        else if (verb == QLatin1String("columns"))
            navigation->setHasColumns(parts.at(1) == QLatin1String("on"));
        else if (verb == QLatin1String("pop"))
            navigation->popViewController(true);
        else if (verb == QLatin1String("tab"))
            tabs->selectTab(parts.at(1).toInt());
        else if (verb == QLatin1String("loop"))
            loop.advance(std::chrono::nanoseconds{0});
        else if (verb == QLatin1String("end"))
            return endAnimation();
        else
            return false;
        return true;
    }

    void present(const QString &asker, const QString &name, bool isSheet)
    {
        at(name)->setModalPresentationStyle(isSheet ? PresentationStyle::FormSheet
                                                    : PresentationStyle::FullScreen);
        at(asker)->presentViewController(at(name), true, completion());
    }

    bool endAnimation()
    {
        log.lines.append(QStringLiteral("|"));
        return presenter.finishAnimation();
    }

    ManualRunLoop loop;
    RecordingPresenter presenter{loop, RecordingPresenter::Animations::EndByHand};
    LifeLog log;
    std::map<QString, std::shared_ptr<PlainScreen>> screens;
    std::shared_ptr<NavigationController> navigation;
    std::shared_ptr<TabBarController> tabs;
};

} // namespace cvtamber
