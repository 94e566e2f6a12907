// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ViewController.h"

#include "ui/Answers.h"
#include "ui/ModalTransition.h"
#include "ui/NavigationController.h"
#include "ui/Texts.h"

#include <QPointer>

#include <utility>

namespace cvtamber {

ViewController::ViewController(Presenter &presenter)
    : _presenter(presenter)
{}

ViewController::~ViewController() = default;

void ViewController::setTitle(const QString &title)
{
    if (_title == title)
        return;
    _title = title;
    emit titleChanged();
}

void ViewController::setLeftItems(const QList<BarButtonItem> &items)
{
    _leftItems = items;
    updateEditItems();
    emit itemsChanged();
}

void ViewController::setRightItems(const QList<BarButtonItem> &items)
{
    _rightItems = items;
    updateEditItems();
    emit itemsChanged();
}

void ViewController::setItemEnabled(BarButtonItem::Kind kind, bool enabled)
{
    for (auto *items : {&_leftItems, &_rightItems}) {
        for (auto &item : *items) {
            if (item.kind != kind)
                continue;
            if (std::exchange(item.isEnabled, enabled) != enabled)
                emit itemsChanged();
            return;
        }
    }
}

void ViewController::setEditing(bool editing)
{
    if (_isEditing == editing)
        return;
    _isEditing = editing;
    if (updateEditItems())
        emit itemsChanged();
    emit editingChanged();
}

BarButtonItem ViewController::editButtonItem()
{
    BarButtonItem item;
    item.kind = BarButtonItem::Kind::Edit;
    item.title = localized(_isEditing ? "Done" : "Edit");
    item.action = [self = QPointer<ViewController>(this)] {
        if (!self)
            return;
        self->setEditing(!self->isEditing());
        // The button has the focus and a new name, which readers do not say.
        self->presenter().announce(localized(self->isEditing() ? "Editing" : "Editing has ended"));
    };
    return item;
}

bool ViewController::updateEditItems()
{
    bool isChanged = false;
    for (auto *items : {&_leftItems, &_rightItems}) {
        for (auto &item : *items) {
            if (item.kind != BarButtonItem::Kind::Edit)
                continue;
            item.title = localized(_isEditing ? "Done" : "Edit");
            isChanged = true;
        }
    }
    return isChanged;
}

void ViewController::presentViewController(const Controller &controller, bool animated, Completion completion,
                                           Completion refused)
{
    if (!controller)
        return;
    const auto current = presentedViewController();
    if (current && !current->_isLeaving) {
        refuseToPresent(refused);
        return;
    }
    _awaited = controller;
    controller->_isLeaving = false;
    auto transition = [weak = weak_from_this(), controller, animated, completion = std::move(completion),
                       refused = std::move(refused)](const TransitionQueue::Done &done) {
        const auto self = weak.lock();
        if (!self) {
            done();
            return;
        }
        if (self->_awaited.lock() == controller)
            self->_awaited.reset();
        if (!ModalTransition::present(self, controller, animated, completion, done))
            self->refuseToPresent(refused);
    };
    _presenter.transitions().add(std::move(transition));
}

// What a person has chosen is done or told.
void ViewController::refuseToPresent(const Completion &refused) const
{
    if (refused)
        refused();
    else if (!hasGone())
        _presenter.showNotice(localized("Something else was opened meanwhile. Please choose again."));
}

void ViewController::dismissViewController(bool animated, Completion completion)
{
    auto target = presentedViewController();
    if (!target)
        target = std::const_pointer_cast<ViewController>(outermost().shared_from_this());
    target->_isLeaving = true;
    auto transition = [&presenter = _presenter, target, animated,
                       completion = std::move(completion)](const TransitionQueue::Done &done) {
        ModalTransition::dismiss(presenter, target, animated, completion, done);
    };
    _presenter.transitions().add(std::move(transition));
}

ViewController::Controller ViewController::presentedViewController() const
{
    if (auto awaited = _awaited.lock())
        return awaited;
    const auto &host = outermost();
    if (!host._above)
        return nullptr;
    const auto asker = host._above->_presenting.lock();
    const auto isMine = asker ? asker->isInside(*this) : &host == this;
    return isMine ? host._above : nullptr;
}

ViewController::Controller ViewController::presentingViewController() const
{
    return outermost()._presenting.lock();
}

void ViewController::showAlert(AlertView alert)
{
    _presenter.showAlert(answeredOnce(std::move(alert), asker()));
}

void ViewController::showActionSheet(ActionSheet sheet)
{
    sheet.anchor.screen = this;
    _presenter.showActionSheet(answeredOnce(std::move(sheet), asker()));
}

std::function<std::shared_ptr<const void>()> ViewController::asker() const
{
    return [weak = weak_from_this()]() -> std::shared_ptr<const void> {
        const auto self = weak.lock();
        return self && !self->hasGone() ? self : nullptr;
    };
}

std::shared_ptr<NavigationController> ViewController::navigationController() const
{
    return _navigation.lock();
}

bool ViewController::isInUse() const
{
    return isVisible() || presentedViewController() != nullptr;
}

bool ViewController::hasGone() const
{
    if (_hasGone)
        return true;
    const auto container = parent();
    return container && container->hasGone();
}

bool ViewController::takesActions() const
{
    return isSeen() && !outermost()._above && !_presenter.transitions().hasWaiting();
}

void ViewController::perform(std::function<void()> action)
{
    // The action may let go of this screen.
    const auto self = weak_from_this().lock();
    if (takesActions()) {
        action();
        return;
    }
    const auto &above = outermost()._above;
    if (!isSeen() || !above || !above->_isLeaving || std::exchange(_hasWaitingAction, true))
        return;
    _presenter.transitions().add([weak = weak_from_this(), action](const TransitionQueue::Done &done) {
        if (const auto screen = weak.lock()) {
            screen->_hasWaitingAction = false;
            if (screen->takesActions())
                action();
        }
        done();
    });
}

const ViewController &ViewController::outermost() const
{
    const auto *top = this;
    while (const auto container = top->parent())
        top = container.get();
    return *top;
}

bool ViewController::isInside(const ViewController &container) const
{
    if (this == &container)
        return true;
    const auto mine = parent();
    return mine && mine->isInside(container);
}

void ViewController::loadViewIfNeeded()
{
    if (std::exchange(_isLoaded, true))
        return;
    viewDidLoad();
    viewLoaded();
}

void ViewController::beginAppearing()
{
    if (_appearance == Appearance::Appearing || _appearance == Appearance::Shown)
        return;
    loadViewIfNeeded();
    _appearance = Appearance::Appearing;
    viewWillAppear();
}

void ViewController::endAppearing()
{
    if (_appearance != Appearance::Appearing)
        return;
    _appearance = Appearance::Shown;
    viewDidAppear();
}

void ViewController::beginDisappearing()
{
    if (_appearance == Appearance::Hidden || _appearance == Appearance::Disappearing)
        return;
    _appearance = Appearance::Disappearing;
    viewWillDisappear();
}

void ViewController::endDisappearing()
{
    if (_appearance != Appearance::Disappearing)
        return;
    _appearance = Appearance::Hidden;
    viewDidDisappear();
}

void ViewController::leftItemClicked(int index)
{
    itemClicked(_leftItems, index);
}

void ViewController::rightItemClicked(int index)
{
    itemClicked(_rightItems, index);
}

void ViewController::itemClicked(QList<BarButtonItem> items, int index)
{
    if (index < 0 || index >= items.size())
        return;
    const auto &item = items.at(index);
    if (item.isEnabled && item.action)
        perform(item.action);
}

} // namespace cvtamber
