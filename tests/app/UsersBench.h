// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BrowserBench.h"
#include "app/MUsersViewController.h"
#include "device/Reconnector.h"
#include "support/MemoryDefaults.h"

#include <QCoreApplication>
#include <QTranslator>

#include <memory>

namespace cvtamber {

// Texts for the keys that are formats: "2.4 %@" for "2.4". Every other key is its own text.
class FormatTexts final : public QTranslator
{
public:
    FormatTexts() { QCoreApplication::installTranslator(this); }
    ~FormatTexts() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *key, const char *, int) const override
    {
        static const QStringList formats{QStringLiteral("0.1"), QStringLiteral("1.2"), QStringLiteral("2.4")};
        const QString text = QString::fromUtf8(key);
        return formats.contains(text) ? QString(text % u" %@") : QString();
    }
};

// A store on a real disk with the users that a test puts there, and a users screen over it in a window that is not
// there.
class UsersBench
{
public:
    using Users = std::shared_ptr<MUsersViewController>;
    using User = std::shared_ptr<TamberUser>;
    using List = MUsersViewController::List;

    explicit UsersBench(StoreRig::Place place = StoreRig::Place::Local,
                        FileOperations &operations = FileOperations::system())
        : rig(place, operations)
    {}
    ~UsersBench()
    {
        screen.reset();
        MGlobals::setCurrentActiveUser(nullptr);
        MGlobals::setTamberStorage(nullptr);
        if (storage)
            storage->close();
        rig.settle();
    }

    // Puts a user's record there, "First/Last/Display"; the directory, for more to be put into it.
    QString putUser(const QString &names, List list = List::Active)
    {
        QString directory = (list == List::Active ? u"ActiveUsers/" : u"ArchivedUsers/") %
                            QStringLiteral("10000000-0000-0000-0000-%1").arg(++_users, 12, 10, QChar(u'0'));
        rig.put(directory % u"/user.txt", QString(names).replace(u'/', u'\n').toUtf8() + '\n');
        return directory;
    }
    void openStore()
    {
        storage = TamberStorage::withURL(rig.context, rig.root());
        MGlobals::setTamberStorage(storage);
    }
    std::shared_ptr<TamberUsers> registry(List list = List::Active) const
    {
        return list == List::Active ? storage->activeUsers() : storage->archivedUsers();
    }
    // Opens the store when that has not been done, and shows one of its lists.
    Users show(List list = List::Active)
    {
        if (!storage)
            openStore();
        return showScreen(std::make_shared<MUsersViewController>(context, registry(list)));
    }
    Users showScreen(const Users &users)
    {
        screen = users;
        navigation = NavigationController::withRoot(presenter, users);
        presenter.showRoot(navigation);
        tester = std::make_unique<QAbstractItemModelTester>(
            &users->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        rig.settle();
        return users;
    }
    void settle() { rig.settle(); }

    // By first name; null when nobody is called so.
    User user(const QString &firstName, List list = List::Active) const
    {
        for (const User &user : registry(list)->users()) {
            if (user->firstName() == firstName)
                return user;
        }
        return nullptr;
    }
    // What the rows say, through the model.
    static QStringList shown(const TableViewController &table, int role = TableModel::TextRole)
    {
        QStringList texts;
        for (int row = 0; row < table.model().rowCount(); ++row)
            texts.append(table.model().data(table.model().index(row), role).toString());
        return texts;
    }
    int rowOf(const QString &text) const { return static_cast<int>(shown(*screen).indexOf(text)); }
    static bool isEnabled(const ViewController &controller, BarButtonItem::Kind kind)
    {
        for (const auto &items : {controller.leftItems(), controller.rightItems()}) {
            for (const BarButtonItem &item : items) {
                if (item.kind == kind)
                    return item.isEnabled;
            }
        }
        return false;
    }
    // As a person hits a bar button; false when there is none of that kind.
    static bool click(ViewController &controller, BarButtonItem::Kind kind)
    {
        for (qsizetype i = 0; i < controller.leftItems().size(); ++i) {
            if (controller.leftItems()[i].kind == kind) {
                controller.leftItemClicked(static_cast<int>(i));
                return true;
            }
        }
        for (qsizetype i = 0; i < controller.rightItems().size(); ++i) {
            if (controller.rightItems()[i].kind == kind) {
                controller.rightItemClicked(static_cast<int>(i));
                return true;
            }
        }
        return false;
    }
    // Opens the edit menu of the user and chooses from it, by the key of the entry.
    void choose(const QString &text, const QString &entry)
    {
        screen->setEditing(true);
        screen->rowClicked(0, rowOf(text));
        presenter.answerSheet(entry);
        rig.settle();
    }

    // In the order in which they need each other.
    FormatTexts texts;
    StoreRig rig;
    DeviceRig device;
    RecordingPresenter presenter{rig.loop};
    TemporaryLocations locations;
    FakeMail mail;
    FakePreview preview;
    MemoryDefaults defaults;
    Reconnector reconnector{rig.loop, *device.device, device.manager,
                            ReconnectorClient{.watchesEveryLink = true}};
    AppContext context{rig.loop,  presenter, rig.context, *device.device, *device.manager,   defaults,
                       locations, mail,      preview,     rig.log,        rig.notifications, reconnector};
    std::shared_ptr<TamberStorage> storage;
    Users screen;
    std::shared_ptr<NavigationController> navigation;
    std::unique_ptr<QAbstractItemModelTester> tester;

private:
    int _users = 0;
};

} // namespace cvtamber
