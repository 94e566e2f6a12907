// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace cvtamber {

// The one line that a person may type into an alert.
struct AlertTextField
{
    QString text;
    bool selectsAll = false;
    bool hasClearButton = false;
};

// A question with buttons, and at most one text. Told apart by its tag.
struct AlertView
{
    // Of an alert that was closed without a button.
    static constexpr int NoButton = -1;

    int tag = 0;
    QString title;
    QString message;
    QStringList buttons;
    // The button that Escape and the back gesture are; -1 for none, then they do nothing.
    int cancelButtonIndex = -1;
    // Escape and the back gesture are no button: they close the alert with NoButton.
    bool closesWithoutButton = false;
    std::optional<AlertTextField> textField;
    // Called once, after the alert has gone: the button's index and the text as it stood.
    std::function<void(const AlertView &alert, int buttonIndex, const QString &text)> didDismiss;
};

} // namespace cvtamber
