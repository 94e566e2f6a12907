// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerMoving.h"

#include "app/ContainerScreen.h"
#include "app/TamberContainerViewController.h"
#include "base/SystemLog.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

void ContainerMoving::move(const ContainerItem &item)
{
    if (!_screen.isStillThere(item))
        return;
    _item = item;
    if (item.isFolder())
        askForContainerToMoveFolderTo();
    else
        askForFolderToMoveFile();
}

void ContainerMoving::askForFolderToMoveFile()
{
    presentPicker(TamberPickUserOrFolderViewController::Mode::PickUserThenFolder);
}

void ContainerMoving::askForContainerToMoveFolderTo()
{
    presentPicker(TamberPickUserOrFolderViewController::Mode::PickUser);
}

void ContainerMoving::presentPicker(TamberPickUserOrFolderViewController::Mode mode)
{
    TamberContainerViewController &controller = _screen.controller();
    const auto picker = std::make_shared<TamberPickUserOrFolderViewController>(_screen.context());
    picker->setMode(mode);
    picker->setPickDelegate(
        std::shared_ptr<TamberPickUserOrFolderViewControllerDelegate>(controller.shared_from_this(), this));
    picker->setActionButtonTitle(localized("4.16"));
    picker->setModalPresentationStyle(PresentationStyle::FormSheet);
    _picker = picker;
    controller.presentViewController(picker, true);
}

template<typename Place> void ContainerMoving::finishPicking(const std::shared_ptr<Place> &place)
{
    TamberContainerViewController &controller = _screen.controller();
    const auto picker = std::exchange(_picker, {}).lock();
    if (!picker || controller.presentedViewController() != picker)
        return;
    controller.dismissViewController(true, _screen.whileAlive([this, item = std::exchange(_item, {}), place] {
        if (place)
            moveTo(item, place);
    }));
}

void ContainerMoving::moveTo(const ContainerItem &item, const std::shared_ptr<TamberFilesContainer> &place)
{
    if (!_screen.isStillThere(item))
        return;
    if (item.isFolder()) {
        _screen.contents().user()->moveFolder(
            item.folder, std::dynamic_pointer_cast<TamberFilesAndFoldersContainer>(place));
        return;
    }
    _screen.contents().filesContainer()->moveFile(item.document, place);
}

void ContainerMoving::tamberPickUserOrFolderViewControllerUserPicked(TamberPickUserOrFolderViewController &,
                                                                     const std::shared_ptr<TamberUser> &user)
{
    finishPicking(user);
}

void ContainerMoving::tamberPickUserOrFolderViewControllerFolderPicked(
    TamberPickUserOrFolderViewController &, const std::shared_ptr<TamberDataFolder> &folder)
{
    finishPicking(folder);
}

void ContainerMoving::tamberContainerViewControllerUserPicked(TamberContainerViewController &,
                                                              const std::shared_ptr<TamberUser> &user)
{
    finishPicking(user);
}

void ContainerMoving::tamberContainerViewControllerFolderPicked(
    TamberContainerViewController &, const std::shared_ptr<TamberDataFolder> &folder)
{
    _screen.context().log.info(u"Folder '"_s % SystemLog::masked(folder ? folder->name() : QString()) %
                               u"' picked"_s);
    finishPicking(folder);
}

} // namespace cvtamber
