// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TabBarController.h"

#include "ui/NavigationController.h"

#include <utility>

namespace cvtamber {

TabBarController::TabBarController(Presenter &presenter)
    : ViewController(presenter)
{}

void TabBarController::setTabs(std::vector<Tab> tabs)
{
    _tabs = std::move(tabs);
    for (const auto &tab : _tabs) {
        tab.controller->_parent = weak_from_this();
        watchTitle(*tab.controller);
        const auto navigation = std::dynamic_pointer_cast<NavigationController>(tab.controller);
        if (navigation && navigation->depth() > 0)
            watchTitle(*navigation->viewControllers().front());
    }
    emit tabsChanged();
}

void TabBarController::watchTitle(ViewController &controller)
{
    connect(&controller, &ViewController::titleChanged, this, &TabBarController::tabsChanged,
            Qt::UniqueConnection);
}

QString TabBarController::tabTitle(int index) const
{
    if (!isTab(index))
        return {};
    const auto &controller = _tabs[static_cast<size_t>(index)].controller;
    const auto navigation = std::dynamic_pointer_cast<NavigationController>(controller);
    if (!controller->title().isEmpty() || !navigation || navigation->depth() == 0)
        return controller->title();
    return navigation->viewControllers().front()->title();
}

QString TabBarController::tabImage(int index) const
{
    return isTab(index) ? _tabs[static_cast<size_t>(index)].image : QString();
}

TabBarController::Controller TabBarController::selectedViewController() const
{
    return isTab(_selectedIndex) ? _tabs[static_cast<size_t>(_selectedIndex)].controller : nullptr;
}

void TabBarController::selectTab(int index)
{
    if (!isTab(index) || index == _selectedIndex)
        return;
    const auto old = selectedViewController();
    const auto next = _tabs[static_cast<size_t>(index)].controller;
    _selectedIndex = index;
    old->beginDisappearing();
    if (_appearance == Appearance::Appearing || _appearance == Appearance::Shown)
        next->beginAppearing();
    emit selectedIndexChanged();
    old->endDisappearing();
    // One that is still appearing goes on with this controller.
    if (_appearance == Appearance::Shown)
        next->endAppearing();
}

void TabBarController::setMenu(std::function<void()> menu)
{
    _menu = std::move(menu);
    emit tabsChanged();
}

void TabBarController::menuClicked()
{
    if (_menu)
        perform(_menu);
}

void TabBarController::beginAppearing()
{
    ViewController::beginAppearing();
    if (const auto selected = selectedViewController())
        selected->beginAppearing();
}

void TabBarController::endAppearing()
{
    ViewController::endAppearing();
    if (const auto selected = selectedViewController())
        selected->endAppearing();
}

void TabBarController::beginDisappearing()
{
    ViewController::beginDisappearing();
    if (const auto selected = selectedViewController())
        selected->beginDisappearing();
}

void TabBarController::endDisappearing()
{
    ViewController::endDisappearing();
    if (const auto selected = selectedViewController())
        selected->endDisappearing();
}

} // namespace cvtamber
