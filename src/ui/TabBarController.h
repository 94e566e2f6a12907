// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ViewController.h"

#include <vector>

namespace cvtamber {

// Screens side by side, one of them shown. It forwards its own life to the selected one.
class TabBarController : public cvtamber::ViewController
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY tabsChanged)
    Q_PROPERTY(bool hasMenu READ hasMenu NOTIFY tabsChanged)
    Q_PROPERTY(int selectedIndex READ selectedIndex NOTIFY selectedIndexChanged)

public:
    struct Tab
    {
        Controller controller;
        // Name of an image in the program's resources.
        QString image;
    };

    explicit TabBarController(Presenter &presenter);

    void setTabs(std::vector<Tab> tabs);
    const std::vector<Tab> &tabs() const { return _tabs; }
    int count() const { return static_cast<int>(_tabs.size()); }
    // Its controller's title as it is now; of a navigation without one, the title of its root. tabsChanged tells of a
    // new one.
    Q_INVOKABLE QString tabTitle(int index) const;
    Q_INVOKABLE QString tabImage(int index) const;
    int selectedIndex() const { return _selectedIndex; }
    Controller selectedViewController() const;
    // At once, without an animation. Outside the tabs: nothing.
    Q_INVOKABLE void selectTab(int index);
    // The program's own menu, which a wide window has a button for beside the tabs.
    void setMenu(std::function<void()> menu);
    bool hasMenu() const { return _menu != nullptr; }
    Q_INVOKABLE void menuClicked();

    void beginAppearing() override;
    void endAppearing() override;
    void beginDisappearing() override;
    void endDisappearing() override;

signals:
    void tabsChanged();
    void selectedIndexChanged();

private:
    bool isTab(int index) const { return index >= 0 && index < count(); }
    void watchTitle(ViewController &controller);

    std::vector<Tab> _tabs;
    int _selectedIndex = 0;
    std::function<void()> _menu;
};

} // namespace cvtamber
