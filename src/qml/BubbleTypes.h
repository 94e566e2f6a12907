// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/BubbleModel.h"
#include "chat/BubbleTable/UIBubbleTableView.h"

#include <QtQml/qqml.h>

// The bubble table under the names that its views know it by.
namespace cvtamber {

struct UIBubbleTableViewType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::UIBubbleTableView)
    QML_NAMED_ELEMENT(UIBubbleTableView)
    QML_UNCREATABLE("Screens make their tables.")
};

struct BubbleModelType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::BubbleModel)
    QML_NAMED_ELEMENT(BubbleModel)
    QML_UNCREATABLE("A bubble table makes its model.")
};

} // namespace cvtamber
