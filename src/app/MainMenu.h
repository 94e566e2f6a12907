// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/AlertView.h"

#include <QStringList>

#include <functional>

namespace cvtamber {

class FileChooser;
class Presenter;
class TabBarController;

// What a person asks of the program itself: the menu that a wide window has a button for, and opening files.
// Thread: main thread. Owner: start-up; what is given outlives it.
class MainMenu
{
public:
    struct Surroundings
    {
        Presenter &presenter;
        FileChooser &files;
        // As files of other programs are taken in.
        std::function<void(const QStringList &paths, const QStringList &others)> handOver;
        std::function<void()> showSettings;
    };

    explicit MainMenu(const Surroundings &surroundings);

    // Over the tabs.
    void show(TabBarController &tabs);
    // Lets the person choose files; where the system has no window for that, it is told what else there is.
    void openFiles();

private:
    const Surroundings _surroundings;
};

} // namespace cvtamber
