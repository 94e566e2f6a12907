// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ContainerContents.h"
#include "app/TamberContainerViewControllerDelegate.h"
#include "app/TamberPickUserOrFolderViewController.h"

namespace cvtamber {

class ContainerScreen;

// Moves a document or a folder of a container browser to where a person picks: the picker is asked, dismissed, and then
// the store moves. A document goes to a user or a folder, a folder to a user.
//
// Every answer, also none, gives the browser its container back: the picker shows the same user, too.
// Thread: main thread. Owner: the browser.
class ContainerMoving final : public TamberPickUserOrFolderViewControllerDelegate,
                              public TamberContainerViewControllerDelegate
{
public:
    explicit ContainerMoving(ContainerScreen &screen)
        : _screen(screen)
    {}

    // Asks for the place.
    void move(const ContainerItem &item);

    void tamberPickUserOrFolderViewControllerUserPicked(TamberPickUserOrFolderViewController &picker,
                                                        const std::shared_ptr<TamberUser> &user) override;
    void tamberPickUserOrFolderViewControllerFolderPicked(
        TamberPickUserOrFolderViewController &picker,
        const std::shared_ptr<TamberDataFolder> &folder) override;
    // Of a browser in pick mode that this one is the delegate of.
    void tamberContainerViewControllerUserPicked(TamberContainerViewController &controller,
                                                 const std::shared_ptr<TamberUser> &user) override;
    void tamberContainerViewControllerFolderPicked(TamberContainerViewController &controller,
                                                   const std::shared_ptr<TamberDataFolder> &folder) override;
    // Of a picker of users alone.
    void pickUserPicked(const std::shared_ptr<TamberUser> &user);
    void pickUserCancelled() {}

private:
    void askForFolderToMoveFile();
    void askForContainerToMoveFolderTo();
    void presentPicker(TamberPickUserOrFolderViewController::Mode mode);
    // Dismisses the picker, once; then the move, when there is a place.
    template<typename Place> void finishPicking(const std::shared_ptr<Place> &place);
    void moveTo(const ContainerItem &item, const std::shared_ptr<TamberFilesContainer> &place);

    ContainerScreen &_screen;
    ContainerItem _item;
    std::weak_ptr<ViewController> _picker;
};

} // namespace cvtamber
