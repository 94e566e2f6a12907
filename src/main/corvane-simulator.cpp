// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EventRunLoop.h"
#include "base/StandardLocations.h"
#include "base/StderrLog.h"
#include "base/VisibleText.h"
#include "main/SignalWatcher.h"
#include "main/SimulatorCommandLine.h"
#include "simulator/bluez/BluezDaemon.h"
#include "simulator/bluez/BusAddress.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum Status { Done = 0, Failed = 1, WrongUsage = 2 };

// Without --verbose only what went wrong is told.
class QuietLog final : public SystemLog
{
public:
    void write(const QString &message) override
    {
        if (message.startsWith(u"[***ERROR***]"))
            _stderrLog.write(message);
    }

private:
    StderrLog _stderrLog;
};

void print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

int refuse(const QString &why, Status status)
{
    print(stderr, u"corvane-simulator: "_s + visibleText(why) + u'\n');
    return status;
}

void removeDelays(DeviceProfileSet &profiles)
{
    for (DeviceProfile &device : profiles.devices) {
        // Advertisements need some time between them, or a scan does nothing else.
        device.delays = {0ms, 0ms, 0ms, 0ms, 0ms, 0ms, 20ms};
    }
}

// Two devices of one address would be one on the bus.
QString sharedAddress(const DeviceProfileSet &profiles)
{
    QStringList addresses;
    for (const DeviceProfile &device : profiles.devices) {
        QString address = BluezDevice::addressOf(device);
        if (addresses.contains(address))
            return address;
        addresses.append(address);
    }
    return {};
}

int serve(QCoreApplication &application, const SimulatorCommandLine &commandLine,
          const DeviceProfileSet &profiles)
{
    EventRunLoop runLoop;
    StderrLog stderrLog;
    QuietLog quietLog;
    SystemLog &log = commandLine.verbose ? static_cast<SystemLog &>(stderrLog) : quietLog;
    StandardLocations locations;
    const QString state = commandLine.stateFolder ? *commandLine.stateFolder : locations.stateFolder();
    const auto radio = SimulatedRadio::fromProfile(runLoop, log, profiles, state);
    BluezDaemon daemon({runLoop, log, *radio, profiles.daemon}, commandLine.busAddress);
    const SignalWatcher signalWatcher([&application](int) { application.exit(Done); });
    const QString error =
        daemon.start([&application](const QString &why) { application.exit(refuse(why, Failed)); });
    if (!error.isEmpty())
        return refuse(error, Failed);
    if (commandLine.printAddress)
        print(stdout, commandLine.busAddress + u'\n');
    print(stdout, u"ready\n"_s);
    return application.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argc, argv);
    const ParsedSimulatorCommandLine parsed = parseSimulatorCommandLine(QCoreApplication::arguments().mid(1));
    if (!parsed.error.isEmpty())
        return refuse(parsed.error + u" See corvane-simulator --help."_s, WrongUsage);
    const SimulatorCommandLine &commandLine = parsed.commandLine;
    if (commandLine.action != SimulatorCommandLine::Action::Run) {
        print(stdout, commandLine.action == SimulatorCommandLine::Action::ShowHelp
                          ? SimulatorCommandLine::helpText()
                          : u"corvane-simulator " CVTAMBER_VERSION "\n"_s);
        return Done;
    }
    if (BusAddress::isSystemBus(commandLine.busAddress) && !commandLine.reallySystem)
        return refuse(
            u"%1 is the system bus of this machine, where the name org.bluez belongs to the real "
            "Bluetooth; name another bus, or add --yes-really-system."_s.arg(commandLine.busAddress),
            WrongUsage);
    ProfileResult profile{DeviceProfileSet::builtIn(), {}};
    if (!commandLine.profile.isEmpty())
        profile = readProfileFile(commandLine.profile);
    if (profile.error.isEmpty() && !sharedAddress(profile.profiles).isEmpty())
        profile.error =
            u"Two devices of the profile have the address %1."_s.arg(sharedAddress(profile.profiles));
    if (!profile.error.isEmpty())
        return refuse(profile.error, WrongUsage);
    if (commandLine.fast)
        removeDelays(profile.profiles);
    return serve(application, commandLine, profile.profiles);
}
