// SPDX-License-Identifier: GPL-3.0-or-later
#include "main/SimulatorCommandLine.h"

#include "simulator/bluez/BusAddress.h"

#include <QCommandLineParser>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

// Which bus, from the options and the environment; empty with an error.
QString chosenBus(const QCommandLineParser &parser, QString &error)
{
    const int choices = (parser.isSet(u"bus"_s) ? 1 : 0) + (parser.isSet(u"session"_s) ? 1 : 0) +
                        (parser.isSet(u"system"_s) ? 1 : 0);
    if (choices > 1) {
        error = u"--bus, --session and --system exclude each other."_s;
        return {};
    }
    if (parser.isSet(u"bus"_s))
        return parser.value(u"bus"_s);
    const bool session = parser.isSet(u"session"_s);
    const char *variable = session ? "DBUS_SESSION_BUS_ADDRESS" : "DBUS_SYSTEM_BUS_ADDRESS";
    QString address = qEnvironmentVariable(variable);
    if (!address.isEmpty())
        return address;
    if (session)
        error = u"There is no session bus: DBUS_SESSION_BUS_ADDRESS is not set."_s;
    return session ? QString() : BusAddress::ofSystemBus();
}

} // namespace

QString SimulatorCommandLine::helpText()
{
    return u"Usage: corvane-simulator [OPTION]...\n"
           "Puts simulated Corvane devices on a D-Bus, as the Bluetooth daemon org.bluez would.\n\n"
           "  --profile FILE       the devices, as JSON (without it one English device)\n"
           "  --bus ADDRESS        the bus\n"
           "  --session            the bus in DBUS_SESSION_BUS_ADDRESS\n"
           "  --system             the bus in DBUS_SYSTEM_BUS_ADDRESS (this is the default)\n"
           "  --yes-really-system  take the name also on the real system bus\n"
           "  --state FOLDER       where devices keep what is stored on them\n"
           "  --no-state           keep nothing after the end\n"
           "  --fast               no delays, whatever the profile says\n"
           "  --print-address      print the bus's address before \"ready\"\n"
           "  -v, --verbose        log what clients call to standard error\n"
           "  -h, --help           this text\n"
           "  --version            the version\n\n"
           "Prints \"ready\" when the name is owned, and ends on SIGTERM, SIGINT or SIGHUP.\n"
           "Exit status: 0 ended when told to, 1 failed, 2 wrong usage.\n"_s;
}

ParsedSimulatorCommandLine parseSimulatorCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOptions({{u"profile"_s, {}, u"FILE"_s},
                       {u"bus"_s, {}, u"ADDRESS"_s},
                       {u"state"_s, {}, u"FOLDER"_s},
                       QCommandLineOption(u"session"_s),
                       QCommandLineOption(u"system"_s),
                       QCommandLineOption(u"yes-really-system"_s),
                       QCommandLineOption(u"no-state"_s),
                       QCommandLineOption(u"fast"_s),
                       QCommandLineOption(u"print-address"_s),
                       QCommandLineOption(u"version"_s),
                       QCommandLineOption(QStringList{u"v"_s, u"verbose"_s}),
                       QCommandLineOption(QStringList{u"h"_s, u"help"_s})});
    ParsedSimulatorCommandLine parsed;
    SimulatorCommandLine &line = parsed.commandLine;
    // The parser takes the first text for the program's name.
    if (!parser.parse(QStringList{u"corvane-simulator"_s} + arguments)) {
        parsed.error = parser.errorText();
        return parsed;
    }
    if (!parser.positionalArguments().isEmpty()) {
        parsed.error = u"\"%1\" is not an option."_s.arg(parser.positionalArguments().constFirst());
        return parsed;
    }
    if (parser.isSet(u"help"_s) || parser.isSet(u"version"_s)) {
        line.action = parser.isSet(u"help"_s) ? SimulatorCommandLine::Action::ShowHelp
                                              : SimulatorCommandLine::Action::ShowVersion;
        return parsed;
    }
    line.profile = parser.value(u"profile"_s);
    line.reallySystem = parser.isSet(u"yes-really-system"_s);
    line.fast = parser.isSet(u"fast"_s);
    line.verbose = parser.isSet(u"verbose"_s);
    line.printAddress = parser.isSet(u"print-address"_s);
    if (parser.isSet(u"state"_s) && parser.isSet(u"no-state"_s))
        parsed.error = u"--state and --no-state exclude each other."_s;
    else if (parser.isSet(u"no-state"_s))
        line.stateFolder = QString();
    else if (parser.isSet(u"state"_s))
        line.stateFolder = parser.value(u"state"_s);
    if (parsed.error.isEmpty())
        line.busAddress = chosenBus(parser, parsed.error);
    return parsed;
}

} // namespace cvtamber
