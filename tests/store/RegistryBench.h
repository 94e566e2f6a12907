// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "support/StoreRig.h"

namespace cvtamber {

// A storage over the rig's folder, and what a screen hears of its registries: "added Anna", "will delete
// Anna", "changed Anna", "gathered". Nobody is "nobody".
class RegistryBench final : public TamberUsersDelegate, public std::enable_shared_from_this<RegistryBench>
{
public:
    static std::shared_ptr<RegistryBench> make(StoreRig::Place place = StoreRig::Place::Local,
                                               FileOperations &operations = FileOperations::system())
    {
        auto bench = std::make_shared<RegistryBench>(place, operations);
        bench->rig.notifications.addObserver(
            TamberUsersUserAddedNotification.toString(), [self = bench.get()](const Notification &added) {
                self->heard.append(
                    u"added " +
                    name(added.userInfo.value(QStringLiteral("user")).value<std::shared_ptr<TamberUser>>()));
                self->posters.append(added.object);
            });
        return bench;
    }

    RegistryBench(StoreRig::Place place, FileOperations &operations)
        : rig(place, operations)
    {}
    ~RegistryBench() override
    {
        if (storage)
            storage->close();
    }

    // The registry of active users, with this as its delegate from the time after it was loaded.
    std::shared_ptr<TamberUsers> open() { return open(rig.context); }
    std::shared_ptr<TamberUsers> open(StoreContext &context)
    {
        storage = TamberStorage::withURL(context, rig.root());
        if (!storage)
            return nullptr;
        auto users = storage->activeUsers();
        users->setDelegate(weak_from_this());
        return users;
    }

    void userAdded(const User & /*user*/) override { heard.append(QStringLiteral("userAdded called")); }
    void userWillDelete(const User &user) override { heard.append(u"will delete " + name(user)); }
    void dataChangedForUser(const User &user) override { heard.append(u"changed " + name(user)); }
    void contentGathered() override { heard.append(QStringLiteral("gathered")); }

    QStringList take() { return std::exchange(heard, {}); }
    static QString name(const User &user) { return user ? user->firstName() : QStringLiteral("nobody"); }
    static QStringList namesOf(const TamberUsers &users)
    {
        QStringList names;
        for (const User &user : users.users())
            names.append(name(user));
        return names;
    }

    StoreRig rig;
    std::shared_ptr<TamberStorage> storage;
    QStringList heard;
    QList<const void *> posters;
};

} // namespace cvtamber
