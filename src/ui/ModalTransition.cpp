// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ModalTransition.h"

#include <utility>

namespace cvtamber {

ModalTransition::ModalTransition(ViewController::Completion completion, Done done)
    : _completion(std::move(completion))
    , _done(std::move(done))
{}

bool ModalTransition::present(const Controller &presenting, const Controller &controller, bool animated,
                              ViewController::Completion completion, Done done)
{
    const auto host = outermostOf(*presenting);
    if (!mayPresent(*presenting, *host, *controller)) {
        done();
        return false;
    }
    const auto transition = std::make_shared<ModalTransition>(std::move(completion), std::move(done));
    transition->link(presenting, host, controller);
    if (controller->_covers)
        transition->cover(host);
    transition->_appearing.push_back(controller);
    controller->loadViewIfNeeded();
    transition->begin();
    presenting->presenter().present(controller, controller->modalPresentationStyle(),
                                    controller->modalTransitionStyle(), animated, transition->finished());
    return true;
}

void ModalTransition::dismiss(Presenter &presenter, const Controller &controller, bool animated,
                              ViewController::Completion completion, Done done)
{
    const auto transition = std::make_shared<ModalTransition>(std::move(completion), std::move(done));
    const auto host = controller->_below.lock();
    if (!host) {
        presenter.transitions().later(transition->finished());
        return;
    }
    transition->collectLeaving(controller);
    transition->uncover(host);
    transition->begin();
    presenter.dismiss(controller, animated, transition->finished());
}

ModalTransition::Controller ModalTransition::outermostOf(const ViewController &controller)
{
    return std::const_pointer_cast<ViewController>(controller.outermost().shared_from_this());
}

bool ModalTransition::mayPresent(const ViewController &presenting, const ViewController &host,
                                 const ViewController &controller)
{
    const auto isFree = !controller._below.lock() && !controller.parent() && !controller.isVisible();
    return presenting.isSeen() && !host._above && isFree;
}

void ModalTransition::link(const Controller &presenting, const Controller &host, const Controller &controller)
{
    host->_above = controller;
    controller->_below = host;
    controller->_presenting = presenting;
    controller->_hasGone = false;
    // Kept as it was decided here: a window that changes its size does not uncover what was covered.
    controller->_covers = controller->modalPresentationStyle() == PresentationStyle::FullScreen ||
                          !host->presenter().isTablet();
}

void ModalTransition::collectLeaving(const Controller &lowest)
{
    for (auto next = lowest; next; next = next->_above) {
        next->_hasGone = true;
        next->_isLeaving = true;
        _leaving.push_back(next);
        if (next->isVisible())
            _disappearing.insert(_disappearing.begin(), next);
    }
}

void ModalTransition::cover(const Controller &host)
{
    for (auto below = host; below; below = below->_below.lock()) {
        if (below->isVisible())
            _disappearing.push_back(below);
    }
}

void ModalTransition::uncover(const Controller &host)
{
    for (auto below = host; below; below = below->_below.lock()) {
        if (!below->isVisible())
            _appearing.push_back(below);
        if (below->_covers)
            return;
    }
}

void ModalTransition::begin()
{
    for (const auto &controller : _disappearing)
        controller->beginDisappearing();
    for (const auto &controller : _appearing)
        controller->beginAppearing();
}

void ModalTransition::end()
{
    unlink();
    for (const auto &controller : _appearing)
        controller->endAppearing();
    for (const auto &controller : _disappearing)
        controller->endDisappearing();
    for (const auto &controller : _leaving)
        controller->_presenting.reset();
    if (_completion)
        std::exchange(_completion, nullptr)();
    _done();
}

void ModalTransition::unlink()
{
    for (const auto &controller : _leaving) {
        const auto host = controller->_below.lock();
        if (host)
            host->_above.reset();
        controller->_below.reset();
    }
}

Presenter::Finished ModalTransition::finished()
{
    // The call may come twice by mistake; the transition ends once.
    return [self = shared_from_this(), isOver = std::make_shared<bool>(false)] {
        if (!std::exchange(*isOver, true))
            self->end();
    };
}

} // namespace cvtamber
