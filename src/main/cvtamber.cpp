// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeysViewController.h"
#include "app/SettingsViewController.h"
#include "base/NullLog.h"
#include "base/PathBytes.h"
#include "base/StderrLog.h"
#include "main/CVTamberApplication.h"
#include "main/CVTamberCommandLine.h"
#include "main/RadioChoice.h"
#include "main/SignalWatcher.h"
#include "qml/IconProvider.h"
#include "qml/QmlPresenter.h"
#include "ui/NavigationController.h"
#include "ui/Texts.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTranslator>

#include <cstdio>
#include <filesystem>
#include <string>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Identifier = QStringLiteral("org.cvtamber.CVTamber");

void say(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
}

int fail(const QString &sentence, ExitStatus status)
{
    say(stderr, u"cvtamber: "_s % sentence % u'\n');
    return static_cast<int>(status);
}

int showSettings(QGuiApplication &application)
{
    DesktopApplication desktop(QDBusConnection::sessionBus(), Identifier + u".Settings");
    const DesktopApplication::Start role = desktop.start({});
    if (role == DesktopApplication::Start::HandedOver)
        return 0;
    EventRunLoop runLoop;
    StandardLocations locations;
    SettingsDefaults defaults;
    QmlPresenter presenter(runLoop);
    QQuickWindow *const window = presenter.window();
    if (!window)
        return fail(u"the window cannot be made."_s, ExitStatus::Failed);
    const PortalAppearance appearance(QDBusConnection::sessionBus());
    QObject::connect(&appearance, &PortalAppearance::changed, &presenter, &QmlPresenter::setDesktopLook);
    presenter.setCommands({KeysViewController::show, {}, [&presenter](const QStringList &) {
                               presenter.showNotice(localized("Texts are not opened by the settings."));
                           }});
    const auto settings = std::make_shared<SettingsViewController>(presenter, defaults, locations);
    presenter.showRoot(NavigationController::withRoot(presenter, settings));
    QGuiApplication::setWindowIcon(IconProvider::applicationIcon());
    window->setTitle(settings->title());
    window->show();
    desktop.setHandlers({[window](const QString &) { window->requestActivate(); }, {}, {}});
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, window,
                     [settings](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             settings->refresh();
                     });
    const SignalWatcher signalWatcher([](int) { QCoreApplication::quit(); });
    const int status = application.exec();
    desktop.setHandlers({});
    return status;
}

int runApplication(QGuiApplication &application, const CVTamberCommandLine &commandLine)
{
    EventRunLoop runLoop;
    // First, since the views are loaded beside all that follows.
    auto presenter = std::make_unique<QmlPresenter>(runLoop);
    DesktopApplication desktop(QDBusConnection::sessionBus(), Identifier);
    const DesktopApplication::Start role = desktop.start(commandLine.files);
    if (role == DesktopApplication::Start::HandedOver)
        return static_cast<int>(ExitStatus::Done);
    if (role == DesktopApplication::Start::NotAnswered)
        return fail(u"CVTamber runs already and does not answer."_s, ExitStatus::Failed);
    StderrLog stderrLog;
    NullLog nullLog;
    SystemLog &log = commandLine.verbose ? static_cast<SystemLog &>(stderrLog) : nullLog;
    StandardLocations locations;
    CommandLine radioLine;
    radioLine.simulate = commandLine.simulate;
    radioLine.profile = commandLine.profile;
    radioLine.verbose = commandLine.verbose;
    const RadioChoice radio = chooseRadio(radioLine, runLoop, log, locations);
    if (!radio.makeCentral)
        return fail(radio.problem, radio.status);
    CVTamberApplication program(application, runLoop, log, locations, radio.makeCentral, desktop,
                                std::move(presenter));
    if (!program.start(commandLine, role))
        return fail(u"the window cannot be made."_s, ExitStatus::Failed);
    return application.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QByteArrayList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QByteArray(argv[i]));
    std::error_code error;
    const std::string folder = std::filesystem::current_path(error).string();
    const ParsedCVTamberCommandLine parsed = parseCVTamberCommandLine(arguments, pathOfBytes(folder));
    if (!parsed.error.isEmpty())
        return fail(parsed.error + u" See cvtamber --help.", ExitStatus::WrongUsage);
    const CVTamberCommandLine &commandLine = parsed.commandLine;
    if (commandLine.action == CVTamberCommandLine::Action::ShowHelp) {
        say(stdout, CVTamberCommandLine::helpText());
        return 0;
    }
    if (commandLine.action == CVTamberCommandLine::Action::ShowVersion) {
        say(stdout, u"cvtamber " CVTAMBER_VERSION "\n"_s);
        return 0;
    }
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(u"cvtamber"_s);
    QGuiApplication::setApplicationDisplayName(u"CVTamber"_s);
    QGuiApplication::setDesktopFileName(Identifier);
    QTranslator english;
    if (english.load(u":/translations/cvtamber_en.qm"_s))
        QCoreApplication::installTranslator(&english);
    return commandLine.action == CVTamberCommandLine::Action::ShowSettings
               ? showSettings(application)
               : runApplication(application, commandLine);
}
