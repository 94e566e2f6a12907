// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ActionSheet.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

// What a sheet points to, for the views: Anchor::Kind by name.
namespace cvtamber::SheetAnchor {
Q_NAMESPACE
QML_ELEMENT

enum Kind {
    TabBar = static_cast<int>(Anchor::Kind::TabBar),
    View = static_cast<int>(Anchor::Kind::View),
    Row = static_cast<int>(Anchor::Kind::Row),
    LeftBarButton = static_cast<int>(Anchor::Kind::LeftBarButton),
    RightBarButton = static_cast<int>(Anchor::Kind::RightBarButton),
    Menu = static_cast<int>(Anchor::Kind::Menu),
};
Q_ENUM_NS(Kind)

} // namespace cvtamber::SheetAnchor
