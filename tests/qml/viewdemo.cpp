// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the views over made-up screens: viewdemo WIDTH HEIGHT SHOWN [PICTURE.png]
#include "DemoScreens.h"
#include "base/EventRunLoop.h"
#include "qml/QmlPresenter.h"
#include "ui/NavigationController.h"
#include "ui/TabBarController.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

using namespace cvtamber;
using Style = TableCell::Style;

namespace {

std::shared_ptr<DemoTable> users(Presenter &presenter)
{
    auto table = std::make_shared<DemoTable>(presenter, QStringLiteral("Pupils"));
    table->isDeletable = true;
    const QStringList names{
        QStringLiteral("Ann Lee"), QStringLiteral("Bartholomew Featherstonehaugh-Cholmondeley"),
        QStringLiteral("Chloë Müller"), QStringLiteral("Dan"), QStringLiteral("Edda Ostrowska")};
    DemoTable::Section section;
    for (const QString &name : names) {
        TableCell cell = demoCell(Style::Subtitle, name,
                                  name.startsWith(u'C') ? QString() : QStringLiteral("Full name of ") + name);
        cell.image = QStringLiteral("user.png");
        cell.accessory = TableCell::Accessory::DetailDisclosure;
        cell.accessoryName = QStringLiteral("Edit ") + name;
        section.cells.push_back(cell);
    }
    table->sections.push_back(section);
    BarButtonItem add{BarButtonItem::Kind::Add, QStringLiteral("Add pupil"), true, {}};
    table->setRightItems({add, table->editButtonItem()});
    return table;
}

std::shared_ptr<DemoTable> files(Presenter &presenter, int count)
{
    auto table = std::make_shared<DemoTable>(presenter, QStringLiteral("Ann Lee"));
    table->isDeletable = true;
    DemoTable::Section folders{QStringLiteral("Folders"), {}};
    for (const char *name :
         {"Arithmetic", "Letters home", "A folder with a name that is rather longer than the row"}) {
        TableCell cell = demoCell(Style::Value1, QString::fromLatin1(name));
        cell.accessory = TableCell::Accessory::Disclosure;
        folders.cells.push_back(cell);
    }
    DemoTable::Section documents{QStringLiteral("Files"), {}};
    for (int i = 0; i < count; ++i)
        documents.cells.push_back(demoCell(Style::Value1, QStringLiteral("Lesson %1").arg(i + 1),
                                           QStringLiteral("%1 B").arg(i * 37)));
    table->sections = {folders, documents};
    table->setRightItems({BarButtonItem{BarButtonItem::Kind::Action, QStringLiteral("Actions"), true, {}},
                          table->editButtonItem()});
    return table;
}

std::shared_ptr<DemoTable> device(Presenter &presenter)
{
    auto table = std::make_shared<DemoTable>(presenter, QStringLiteral("Device"));
    table->isSelectable = false;
    DemoTable::Section section;
    auto add = [&](const char *label, const char *detail) {
        section.cells.push_back(
            demoCell(Style::Value2, QString::fromLatin1(label), QString::fromLatin1(detail)));
        section.cells.back().canHighlight = false;
    };
    add("State:", "Connected");
    section.cells.back().controls = {
        demoButton(1, QStringLiteral("Disconnect"), QStringLiteral("Disconnect"))};
    add("Files:", "12");
    section.cells.back().controls = {
        demoButton(3, QStringLiteral("Show..."), QStringLiteral("Show files")),
        demoButton(2, QStringLiteral("Refresh"), QStringLiteral("Refresh files"))};
    add("Language:", "American");
    add("UEB:", "");
    CellControl ueb;
    ueb.id = 4;
    ueb.kind = CellControl::Kind::Switch;
    ueb.accessibleName = QStringLiteral("UEB");
    section.cells.back().controls = {ueb};
    add("Braille table:", "American English, grade 2");
    add("Serial No.:", "CV-2014-0003417");
    DemoTable::Section version;
    version.cells.push_back(
        demoCell(Style::Value2, QStringLiteral("CVTamber version::"), QStringLiteral("1.0")));
    table->sections = {section, version};
    table->onControl = [weak = std::weak_ptr<DemoTable>(table)](IndexPath path, int control, bool on) {
        const auto self = weak.lock();
        if (self && control == 4) {
            self->sections[static_cast<size_t>(path.section)]
                .cells[static_cast<size_t>(path.row)]
                .controls[0]
                .isOn = on;
            self->changed();
        }
    };
    return table;
}

std::shared_ptr<DemoTable> picker(Presenter &presenter)
{
    auto table = std::make_shared<DemoTable>(presenter, QString());
    DemoTable::Section section{QStringLiteral("Select Corvane Bluetooth device"), {}};
    section.cells.push_back(
        demoCell(Style::Subtitle, QStringLiteral("Corvane Brailler"), QStringLiteral("CV-2014-0003417")));
    section.cells.push_back(demoCell(
        Style::Wait, QStringLiteral("Looking for devices. Switch the Corvane on and keep it near.")));
    section.cells.back().canHighlight = false;
    table->sections = {section};
    table->footer = QStringLiteral("Cancel");
    return table;
}

struct Demo
{
    explicit Demo(QmlPresenter &shownBy)
        : presenter(shownBy)
        , tabs(std::make_shared<TabBarController>(shownBy))
        , usersScreen(users(shownBy))
    {
        auto archived = std::make_shared<DemoTable>(presenter, QStringLiteral("Archive"));
        archived->sections.push_back(
            {QString(), {demoCell(Style::Centered, QStringLiteral("No pupils in the archive"))}});
        archived->sections[0].cells[0].canHighlight = false;
        first = NavigationController::withRoot(presenter, usersScreen);
        tabs->setTabs(
            {{first, QStringLiteral("user.png")},
             {NavigationController::withRoot(presenter, archived), QStringLiteral("archive.png")},
             {NavigationController::withRoot(presenter, device(presenter)), QStringLiteral("device.png")}});
        presenter.showRoot(tabs);
    }
    void alert(bool withText);
    void sheet();
    void show(const QString &what);

    QmlPresenter &presenter;
    std::shared_ptr<TabBarController> tabs;
    std::shared_ptr<DemoTable> usersScreen;
    std::shared_ptr<NavigationController> first;
};

void Demo::alert(bool withText)
{
    AlertView alert;
    alert.title = QStringLiteral("Delete this pupil?");
    alert.message = QStringLiteral("Ann Lee  (Mrs L) and everything that she has written will be deleted.");
    alert.buttons = QStringList{QStringLiteral("Cancel"), QStringLiteral("Delete")};
    alert.cancelButtonIndex = 0;
    if (withText)
        alert.textField = AlertTextField{QStringLiteral("Lesson 1"), true, true};
    alert.didDismiss = [](const AlertView &, int button, const QString &text) {
        qInfo("alert %d %s", button, qUtf8Printable(text));
    };
    presenter.showAlert(alert);
}

void Demo::sheet()
{
    ActionSheet sheet;
    sheet.buttons = QStringList{QStringLiteral("Delete"), QStringLiteral("Edit pupil"),
                                QStringLiteral("Move to the archive"), QStringLiteral("Cancel")};
    sheet.cancelButtonIndex = 3;
    sheet.destructiveButtonIndex = 0;
    sheet.anchor.kind = Anchor::Kind::Row;
    sheet.anchor.row = 1;
    sheet.didDismiss = [](const ActionSheet &, int button) { qInfo("sheet %d", button); };
    presenter.showActionSheet(sheet);
}

void Demo::show(const QString &what)
{
    if (what == u"alert") {
        alert(false);
    } else if (what == u"text") {
        alert(true);
    } else if (what == u"sheet") {
        sheet();
    } else if (what == u"notice") {
        presenter.showNotice(QStringLiteral("The connection to the device was lost."));
    } else if (what == u"edit") {
        usersScreen->setEditing(true);
    } else if (what == u"archive") {
        tabs->selectTab(1);
    } else if (what == u"device") {
        tabs->selectTab(2);
    } else if (what == u"files" || what == u"many") {
        first->pushViewController(files(presenter, what == u"many" ? 10000 : 5), true);
    } else if (what == u"empty") {
        auto table = std::make_shared<DemoTable>(presenter, QStringLiteral("Letters home"));
        table->empty = QStringLiteral("Nothing here yet. Add a folder, or fetch a file from the device.");
        first->pushViewController(table, true);
    } else if (what == u"picker") {
        auto table = picker(presenter);
        table->setModalPresentationStyle(PresentationStyle::FormSheet);
        usersScreen->presentViewController(table, true);
    } else if (what == u"modal") {
        auto table = files(presenter, 5);
        table->setLeftItems({BarButtonItem{BarButtonItem::Kind::Cancel, QStringLiteral("Cancel"), true,
                                           [this] { usersScreen->dismissViewController(true); }}});
        auto navigation = NavigationController::withRoot(presenter, table);
        navigation->setModalPresentationStyle(PresentationStyle::FormSheet);
        usersScreen->presentViewController(navigation, true);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("CVTamber"));
    const QStringList arguments = QGuiApplication::arguments();
    EventRunLoop loop;
    QmlPresenter presenter(loop);
    if (presenter.window() == nullptr)
        return 1;
    presenter.window()->resize(arguments.value(1, QStringLiteral("390")).toInt(),
                               arguments.value(2, QStringLiteral("844")).toInt());
    presenter.window()->show();
    Demo demo(presenter);
    QTimer::singleShot(300, &presenter, [&] { demo.show(arguments.value(3)); });
    if (arguments.size() > 4) {
        QTimer::singleShot(1500, &presenter, [&] {
            presenter.window()->grabWindow().save(arguments[4]);
            QGuiApplication::quit();
        });
    }
    return QGuiApplication::exec();
}
