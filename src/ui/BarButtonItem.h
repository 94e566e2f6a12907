// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>
#include <QString>

#include <functional>

namespace cvtamber {

// A button of the navigation bar, as a value: the view shows it and calls the action.
struct BarButtonItem
{
    Q_GADGET
    Q_PROPERTY(Kind kind MEMBER kind CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(bool enabled MEMBER isEnabled CONSTANT)

public:
    // What the view takes image, place and shortcut from. Edit turns into Done while the screen is edited; Plain has
    // nothing but its title.
    enum class Kind { Add, Edit, Cancel, Done, Save, Action, Refresh, Plain };
    Q_ENUM(Kind)

    Kind kind = Kind::Done;
    // Names the button for people and screen readers; never empty.
    QString title;
    bool isEnabled = true;
    std::function<void()> action;
};

} // namespace cvtamber
