// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ActionSheet.h"
#include "ui/AlertView.h"

#include <QObject>
#include <QPointer>
#include <QVariantMap>

#include <deque>
#include <functional>
#include <variant>

namespace cvtamber {

// Alerts and action sheets, one after the other, each answered once.
//
//   waiting -> (no transition runs, no other question) shown -> a button -> leaving -> gone: didDismiss runs
//
// Thread: main thread. Owner: the presenter.
class QuestionQueue final : public QObject
{
    Q_OBJECT

public:
    using Question = std::variant<AlertView, ActionSheet>;
    // Makes the dialog "AlertDialog" or "SheetPopup" with these properties; null when it cannot.
    using Maker = std::function<QObject *(const Question &question)>;

    explicit QuestionQueue(Maker maker);

    void add(Question question);
    // While held nothing new is shown.
    void setHeld(bool held);
    bool isAsking() const { return !_popup.isNull(); }
    // None is shown and none waits.
    bool isIdle() const { return !isAsking() && _waiting.empty(); }

signals:
    // The dialog has gone; before its answer is given.
    void gone();

private slots:
    void takeAnswer(int button, const QString &text);
    void popupClosed();

private:
    void showNext();
    static void answer(const Question &question, int button, const QString &text);

    Maker _maker;
    std::deque<Question> _waiting;
    QPointer<QObject> _popup;
    Question _shown;
    int _button = -1;
    QString _text;
    bool _isHeld = false;
};

} // namespace cvtamber
