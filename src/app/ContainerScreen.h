// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppContext.h"
#include "app/ContainerContents.h"
#include "ui/ActionSheet.h"
#include "ui/AlertView.h"

#include <functional>

namespace cvtamber {

class TamberContainerViewController;

// What the parts of a container browser share: what it shows, and how they ask and tell a person.
//
// One question at a time: a second one that is asked for while the first waits for its answer is dropped.
// Thread: main thread. Owner: the browser, which outlives it.
class ContainerScreen
{
public:
    ContainerScreen(AppContext &context, TamberContainerViewController &controller);

    AppContext &context() const { return _context; }
    TamberContainerViewController &controller() const { return _controller; }
    ContainerContents &contents() { return _contents; }
    const ContainerContents &contents() const { return _contents; }

    void ask(ActionSheet sheet);
    void ask(AlertView alert);
    // The row on a tablet, the tab bar on a phone.
    Anchor anchorOf(const ContainerItem &item) const;
    // A line from the texts.
    void tell(const char *key) const;
    // False when the item has left the container, which the person is told.
    bool isStillThere(const ContainerItem &item) const;
    // Opens the document, which stays open, and hands over its text. Nothing when that fails: the store tells it.
    void openText(const std::shared_ptr<TamberDocument> &document,
                  const std::function<void(const QString &text)> &opened) const;
    void reload() const;

    // The action, for later: it is dropped when the screen has gone by then.
    template<typename Action> auto whileInUse(Action action) const
    {
        return [weak = weakController(), action = std::move(action)](const auto &...arguments) {
            const auto controller = weak.lock();
            if (controller && controller->isInUse())
                action(arguments...);
        };
    }
    // The same for a screen that may be covered or on its way out, as long as it exists.
    template<typename Action> auto whileAlive(Action action) const
    {
        return [weak = weakController(), action = std::move(action)](const auto &...arguments) {
            if (const auto controller = weak.lock())
                action(arguments...);
        };
    }

private:
    std::weak_ptr<ViewController> weakController() const;

    AppContext &_context;
    TamberContainerViewController &_controller;
    ContainerContents _contents;
    bool _isAsking = false;
};

} // namespace cvtamber
