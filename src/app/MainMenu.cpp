// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainMenu.h"

#include "app/ContainerMenus.h"
#include "app/KeysViewController.h"
#include "app/TamberContainerViewController.h"
#include "ui/FileChooser.h"
#include "ui/NavigationController.h"
#include "ui/TabBarController.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

enum class ProgramCommand { Open, NewFolder, Settings, Keys, About };

constexpr MenuEntry<ProgramCommand> ProgramMenu[] = {
    {"Open…", ProgramCommand::Open},           {"4.1", ProgramCommand::NewFolder},
    {"Settings", ProgramCommand::Settings},    {"Keys", ProgramCommand::Keys},
    {"About CVTamber", ProgramCommand::About},
};

// The screen in front where a folder can be made; else null.
std::shared_ptr<TamberContainerViewController> placeForFolder(const TabBarController &tabs)
{
    const auto navigation = std::dynamic_pointer_cast<NavigationController>(tabs.selectedViewController());
    const auto browser =
        navigation ? std::dynamic_pointer_cast<TamberContainerViewController>(navigation->topViewController())
                   : nullptr;
    return browser && browser->canAddFolder() ? browser : nullptr;
}

AlertView aboutAlert()
{
    AlertView alert;
    alert.title = localizedFormat("CVTamber %@", QStringLiteral(CVTAMBER_VERSION));
    alert.message =
        localized("The companion of the Corvane braille writing device. It is free software under the "
                  "GPL, version 3 or later, and comes without a warranty.");
    alert.buttons = {localized("OK")};
    alert.cancelButtonIndex = 0;
    return alert;
}

} // namespace

MainMenu::MainMenu(const Surroundings &surroundings)
    : _surroundings(surroundings)
{}

void MainMenu::show(TabBarController &tabs)
{
    std::vector<MenuEntry<ProgramCommand>> menu;
    for (const auto &entry : ProgramMenu) {
        if (entry.command != ProgramCommand::NewFolder || placeForFolder(tabs))
            menu.push_back(entry);
    }
    ActionSheet sheet = menuSheet<ProgramCommand>(0, localized("Menu"), menu);
    sheet.anchor.kind = Anchor::Kind::Menu;
    sheet.didDismiss = [this, &tabs, menu](const ActionSheet &, int button) {
        const auto command = commandAt<ProgramCommand>(menu, button);
        const auto browser = placeForFolder(tabs);
        if (command == ProgramCommand::Open)
            openFiles();
        else if (command == ProgramCommand::NewFolder && browser)
            browser->addFolder();
        else if (command == ProgramCommand::Settings)
            _surroundings.showSettings();
        else if (command == ProgramCommand::Keys)
            KeysViewController::show(tabs);
        else if (command == ProgramCommand::About)
            tabs.showAlert(aboutAlert());
    };
    tabs.showActionSheet(std::move(sheet));
}

void MainMenu::openFiles()
{
    _surroundings.files.choose(localized("Open texts"), [this](const FileChooser::Choice &choice) {
        if (choice.hasFailed)
            _surroundings.presenter.showNotice(localized(
                "This system has no window for choosing files. Drop them on this window, or open them "
                "with CVTamber in your file manager."));
        else
            _surroundings.handOver(choice.paths, choice.others);
    });
}

} // namespace cvtamber
