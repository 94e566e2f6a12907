// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/QuestionQueue.h"

#include <utility>

namespace cvtamber {

QuestionQueue::QuestionQueue(Maker maker)
    : _maker(std::move(maker))
{}

void QuestionQueue::add(Question question)
{
    _waiting.push_back(std::move(question));
    // From the loop: whoever asks has ended what it does.
    QMetaObject::invokeMethod(
        this, [this] { showNext(); }, Qt::QueuedConnection);
}

void QuestionQueue::setHeld(bool held)
{
    _isHeld = held;
    if (!held) {
        QMetaObject::invokeMethod(
            this, [this] { showNext(); }, Qt::QueuedConnection);
    }
}

void QuestionQueue::takeAnswer(int button, const QString &text)
{
    if (_button < 0) {
        _button = button;
        _text = text;
    }
}

void QuestionQueue::popupClosed()
{
    // The signal comes from inside the dialog.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (_popup.isNull()) {
                return;
            }
            _popup->deleteLater();
            _popup = nullptr;
            const Question question = std::exchange(_shown, {});
            const int button = std::exchange(_button, -1);
            emit gone();
            answer(question, button, std::exchange(_text, {}));
            showNext();
        },
        Qt::QueuedConnection);
}

void QuestionQueue::showNext()
{
    if (_isHeld || isAsking() || _waiting.empty()) {
        return;
    }
    _shown = std::move(_waiting.front());
    _waiting.pop_front();
    _popup = _maker(_shown);
    if (_popup.isNull()) {
        return;
    }
    connect(_popup, SIGNAL(answered(int, QString)), this, SLOT(takeAnswer(int, QString)));
    connect(_popup, SIGNAL(closed()), this, SLOT(popupClosed()));
    QMetaObject::invokeMethod(_popup, "open");
}

void QuestionQueue::answer(const Question &question, int button, const QString &text)
{
    if (const auto *alert = std::get_if<AlertView>(&question)) {
        if (alert->didDismiss) {
            alert->didDismiss(*alert, button, text);
        }
    } else if (const auto *sheet = std::get_if<ActionSheet>(&question); sheet->didDismiss) {
        sheet->didDismiss(*sheet, button);
    }
}

} // namespace cvtamber
