// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MEditUserDialog.h"
#include "app/MTextEditViewController.h"
#include "chat/Chat2ViewController.h"
#include "chat/ChatViewController.h"
#include "chat/text/UIMyTextView.h"
#include "device_ui/CVConnectViewController.h"
#include "device_ui/CVTransferViewController.h"

#include <QObject>
#include <QtQml/qqml.h>

// The screens that have a view of their own, under the names that the views know them by.
namespace cvtamber {

struct Chat2ViewControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::Chat2ViewController)
    QML_NAMED_ELEMENT(Chat2ViewController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct ChatViewControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::ChatViewController)
    QML_NAMED_ELEMENT(ChatViewController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct UIMyTextViewType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::UIMyTextView)
    QML_NAMED_ELEMENT(UIMyTextView)
    QML_UNCREATABLE("The page is made in C++.")
};

struct CVConnectViewControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::CVConnectViewController)
    QML_NAMED_ELEMENT(CVConnectViewController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct MEditUserDialogType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::MEditUserDialog)
    QML_NAMED_ELEMENT(MEditUserDialog)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct CVTransferViewControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::CVTransferViewController)
    QML_NAMED_ELEMENT(CVTransferViewController)
    QML_UNCREATABLE("Screens are made in C++.")
};

struct MTextEditViewControllerType
{
    Q_GADGET
    QML_FOREIGN(cvtamber::MTextEditViewController)
    QML_NAMED_ELEMENT(MTextEditViewController)
    QML_UNCREATABLE("Screens are made in C++.")
};

} // namespace cvtamber
