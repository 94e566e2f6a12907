// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ViewController.h"

#include <vector>

namespace cvtamber {

// One presentation or dismissal, from its turn in the queue to its completion: which screens appear and disappear, and
// who stands above whom.
//
// Thread: main thread. Owner: itself, through what it hands to the presenter.
class ModalTransition : public std::enable_shared_from_this<ModalTransition>
{
public:
    using Controller = std::shared_ptr<ViewController>;
    using Done = TransitionQueue::Done;

    // `done` is called when the completion has run, or when there was nothing to do. False where nothing may be presented now.
    static bool present(const Controller &presenting, const Controller &controller, bool animated,
                        ViewController::Completion completion, Done done);
    static void dismiss(Presenter &presenter, const Controller &controller, bool animated,
                        ViewController::Completion completion, Done done);

    ModalTransition(ViewController::Completion completion, Done done);

private:
    static Controller outermostOf(const ViewController &controller);
    static bool mayPresent(const ViewController &presenting, const ViewController &host,
                           const ViewController &controller);

    void link(const Controller &presenting, const Controller &host, const Controller &controller);
    void collectLeaving(const Controller &lowest);
    void cover(const Controller &host);
    void uncover(const Controller &host);
    void begin();
    void end();
    void unlink();
    // What the presenter gets: runs end() and keeps this object until then.
    Presenter::Finished finished();

    // From the one next to the other side of the transition outwards.
    std::vector<Controller> _appearing;
    std::vector<Controller> _disappearing;
    // What a dismissal takes away, the lowest first; empty for a presentation.
    std::vector<Controller> _leaving;
    ViewController::Completion _completion;
    Done _done;
};

} // namespace cvtamber
