// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/EventRunLoop.h"
#include "base/NullLog.h"
#include "base/StandardLocations.h"
#include "base/StderrLog.h"
#include "cli/CommandRunner.h"
#include "cli/StandardConsole.h"
#include "cli/VerbTable.h"
#include "device/CVBTDevice.h"
#include "device/CVBluetoothManager.h"
#include "main/RadioChoice.h"
#include "main/SignalWatcher.h"

#include <QCoreApplication>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

// A terminal has no screen of its own to dim.
class NoIdleTimer final : public IdleTimer
{
public:
    void setEnabled(bool) override {}
};

// A standard stream that was closed by the caller must not become the number of some other file. What cannot
// be written to stays so: reading /dev/null is the end of input, writing to it fails.
void occupyStandardStreams()
{
    int descriptor = 0;
    do {
        descriptor = ::open("/dev/null", O_RDONLY);
    } while (descriptor >= 0 && descriptor <= 2);
    if (descriptor > 2)
        ::close(descriptor);
}

int showText(Console &console, const QString &text)
{
    return static_cast<int>(console.writeOutput(text.toUtf8()) ? ExitStatus::Done : ExitStatus::Failed);
}

// The device object and what it stands on, for the verbs that need one.
struct DeviceWorld
{
    NoIdleTimer idleTimer;
    std::shared_ptr<CVBluetoothManager> manager;

    void make(RunLoop &runLoop, SystemLog &log, const BluetoothCentralFactory &makeCentral)
    {
        manager = CVBluetoothManager::create(runLoop, log, makeCentral());
        CVBluetoothManager::setDefaultManager(manager);
        gCVDevice =
            std::make_shared<CVBTDevice>(CVBTDeviceServices{runLoop, log, idleTimer, manager, makeCentral});
    }
    ~DeviceWorld()
    {
        gCVDevice.reset();
        CVBluetoothManager::setDefaultManager(nullptr);
    }
};

int run(QCoreApplication &application, Console &console, const CommandLine &commandLine)
{
    EventRunLoop runLoop;
    StderrLog stderrLog;
    NullLog nullLog;
    SystemLog &log = commandLine.verbose ? static_cast<SystemLog &>(stderrLog) : nullLog;
    StandardLocations locations;
    DeviceWorld world;
    CommandServices services{runLoop, console, nullptr, nullptr};
    if (verbEntry(commandLine.request.verb).needsDevice) {
        const RadioChoice radio = chooseRadio(commandLine, runLoop, log, locations);
        if (!radio.makeCentral) {
            console.writeMessage(radio.problem);
            return static_cast<int>(radio.status);
        }
        world.make(runLoop, log, radio.makeCentral);
        services.manager = world.manager;
        services.device = gCVDevice.get();
    }
    CommandRunner runner(services, commandLine);
    const SignalWatcher signalWatcher(
        [&runner](int signal) { runner.interrupt(static_cast<ExitStatus>(128 + signal)); });
    runner.start([&application](ExitStatus status) { application.exit(static_cast<int>(status)); });
    return application.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    occupyStandardStreams();
    // A reader that has gone is an error of that write, not the end of the process with a link left open.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argc, argv);
    StandardConsole console({});
    const Parsed<CommandLine> parsed = parseCommandLine(QCoreApplication::arguments().mid(1));
    if (!parsed.value) {
        console.writeMessage(parsed.error + u" See corvane --help."_s);
        return static_cast<int>(ExitStatus::WrongUsage);
    }
    const CommandLine &commandLine = *parsed.value;
    if (commandLine.action == CommandLine::Action::ShowHelp)
        return showText(console, commandLine.helpFor ? helpText(*commandLine.helpFor) : helpText());
    if (commandLine.action == CommandLine::Action::ShowVersion)
        return showText(console, u"corvane " CVTAMBER_VERSION "\n"_s);
    return run(application, console, commandLine);
}
