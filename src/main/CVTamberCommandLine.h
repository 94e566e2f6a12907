// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QString>
#include <QStringList>

namespace cvtamber {

// What cvtamber was asked for.
struct CVTamberCommandLine
{
    enum class Action { Run, ShowSettings, ShowHelp, ShowVersion };

    Action action = Action::Run;
    bool simulate = false;
    QString profile; // null: the built-in one
    bool verbose = false;
    // Started by the bus: nothing is shown before the first request.
    bool waitsForBus = false;
    // Absolute paths.
    QStringList files;

    static QString helpText();
};

struct ParsedCVTamberCommandLine
{
    CVTamberCommandLine commandLine;
    QString error; // a sentence; empty when all is well
};

// The arguments come as the system gave them, without the program's name: a file name need not be UTF-8. A relative one is
// taken from the folder.
ParsedCVTamberCommandLine parseCVTamberCommandLine(const QByteArrayList &arguments,
                                                   const QString &currentFolder);

} // namespace cvtamber
