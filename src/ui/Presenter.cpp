// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Presenter.h"

#include "ui/ViewController.h"

namespace cvtamber {

Presenter::Presenter(RunLoop &runLoop)
    : _transitions(runLoop)
{}

Presenter::~Presenter() = default;

void Presenter::showRoot(const Controller &root)
{
    _transitions.add([this, root](const TransitionQueue::Done &done) {
        root->beginAppearing();
        drawRoot(root);
        root->endAppearing();
        done();
    });
}

} // namespace cvtamber
