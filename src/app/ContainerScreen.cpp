// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerScreen.h"

#include "app/TamberContainerViewController.h"
#include "ui/Texts.h"

namespace cvtamber {

ContainerScreen::ContainerScreen(AppContext &context, TamberContainerViewController &controller)
    : _context(context)
    , _controller(controller)
{}

std::weak_ptr<ViewController> ContainerScreen::weakController() const
{
    return _controller.weak_from_this();
}

void ContainerScreen::ask(ActionSheet sheet)
{
    if (_isAsking)
        return;
    _isAsking = true;
    sheet.didDismiss = [this, answered = std::move(sheet.didDismiss)](const ActionSheet &asked, int button) {
        _isAsking = false;
        answered(asked, button);
    };
    _controller.showActionSheet(sheet);
}

void ContainerScreen::ask(AlertView alert)
{
    if (_isAsking)
        return;
    _isAsking = true;
    alert.didDismiss = [this, answered = std::move(alert.didDismiss)](const AlertView &asked, int button,
                                                                      const QString &text) {
        _isAsking = false;
        answered(asked, button, text);
    };
    _controller.showAlert(alert);
}

Anchor ContainerScreen::anchorOf(const ContainerItem &item) const
{
    if (!_context.presenter.isTablet())
        return {Anchor::Kind::TabBar};
    const IndexPath path = _contents.pathOf(item);
    return {Anchor::Kind::Row, path.section, path.row};
}

void ContainerScreen::tell(const char *key) const
{
    _context.presenter.showNotice(localized(key));
}

bool ContainerScreen::isStillThere(const ContainerItem &item) const
{
    if (_contents.holds(item))
        return true;
    tell(item.isFolder() ? "This folder is not here any more." : "This document is not here any more.");
    return false;
}

void ContainerScreen::openText(const std::shared_ptr<TamberDocument> &document,
                               const std::function<void(const QString &text)> &opened) const
{
    document->openWithCompletionHandler(whileInUse([this, document = document.get(), opened](bool success) {
        if (!success)
            return;
        if (document->text().isNull())
            tell("This document holds something that is not text.");
        else
            opened(document->text());
    }));
}

void ContainerScreen::reload() const
{
    _controller.reloadData();
}

} // namespace cvtamber
