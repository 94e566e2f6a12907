// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/CVTamberCommandLine.h"

#include "base/PathBytes.h"

#include <QDir>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// False for what is no option.
bool takeOption(const QString &argument, CVTamberCommandLine &line)
{
    static const QString simulateWith = u"--simulate="_s;
    if (argument == u"--simulate")
        line.simulate = true;
    else if (argument.startsWith(simulateWith) && argument != simulateWith) {
        line.simulate = true;
        line.profile = argument.mid(simulateWith.size());
    } else if (argument == u"--settings")
        line.action = CVTamberCommandLine::Action::ShowSettings;
    else if (argument == u"--dbus-service")
        line.waitsForBus = true;
    else if (argument == u"--verbose")
        line.verbose = true;
    else if (argument == u"--help" || argument == u"-h")
        line.action = CVTamberCommandLine::Action::ShowHelp;
    else if (argument == u"--version")
        line.action = CVTamberCommandLine::Action::ShowVersion;
    else
        return false;
    return true;
}

} // namespace

QString CVTamberCommandLine::helpText()
{
    return u"cvtamber [--simulate[=PROFILE]] [--verbose] [FILE...]\n"
           "cvtamber --settings\n"
           "cvtamber --help | --version\n"
           "\n"
           "Documents of pupils, and the braille writing device. Text files are opened in the program that\n"
           "runs already, if one does.\n"
           "\n"
           "  --simulate[=PROFILE]  use the built-in simulated device, or the one that the file describes\n"
           "  --settings            show the settings: where documents are kept\n"
           "  --verbose             write the log to standard error\n"
           "  --                    what follows are files\n"_s;
}

ParsedCVTamberCommandLine parseCVTamberCommandLine(const QByteArrayList &arguments,
                                                   const QString &currentFolder)
{
    ParsedCVTamberCommandLine parsed;
    bool areFiles = false;
    for (const QByteArray &bytes : arguments) {
        const QString argument = pathOfBytes(bytes);
        if (!areFiles && argument == u"--") {
            areFiles = true;
        } else if (!areFiles && argument.startsWith(u'-') && argument.size() > 1) {
            if (!takeOption(argument, parsed.commandLine))
                return {{}, u"There is no option "_s % argument % u'.'};
        } else if (argument.isEmpty()) {
            return {{}, u"The name of a file is empty."_s};
        } else {
            const bool isAbsolute = argument.startsWith(u'/');
            parsed.commandLine.files.append(isAbsolute ? argument : QString(currentFolder % u'/' % argument));
        }
    }
    return parsed;
}

} // namespace cvtamber
