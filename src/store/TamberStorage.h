// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreContext.h"

#include <memory>

namespace cvtamber {

class Locations;
class TamberUser;
class TamberUsers;

// The root of the document store: a directory with "ActiveUsers" and "ArchivedUsers".
//
// The registries are made at the first access and dropped when the root moves; whoever holds an old one keeps it.
// Storage and registries own each other: close() drops them at teardown. Thread: main thread. Owner: start-up,
// which publishes it.
class TamberStorage : public std::enable_shared_from_this<TamberStorage>
{
public:
    // Null unless the URL is an existing directory in which both users directories are there or can be made.
    static std::shared_ptr<TamberStorage> withURL(StoreContext &context, const FileURL &url);
    ~TamberStorage();

    static FileURL localStorageURL(Locations &locations);
    // Nil when there is no cloud container. Any thread; may take long.
    static FileURL ubiquotusStorageURL(const CloudContainer &cloud);

    const FileURL &storeURL() const { return _storeURL; }
    // Moves to another root; nothing for the same one. What goes wrong is logged.
    void setStoreURL(const FileURL &url);
    bool isUbiquitous() const { return _isUbiquitous; }
    const std::shared_ptr<TamberUsers> &activeUsers();
    const std::shared_ptr<TamberUsers> &archivedUsers();
    bool createSubfolder(const QString &name);
    // The user's directory goes to the target's, where the user is then listed; it stays in its own registry's
    // list. Screens use the registry's moveUser.
    void moveUser(const std::shared_ptr<TamberUser> &user, const std::shared_ptr<TamberUsers> &target);
    void close();

private:
    explicit TamberStorage(StoreContext &context)
        : _context(context)
    {}
    bool openRoot(const FileURL &url);

    StoreContext &_context;
    std::shared_ptr<TamberUsers> _activeUsers;
    std::shared_ptr<TamberUsers> _archivedUsers;
    bool _isUbiquitous = false;
    FileURL _storeURL;
};

} // namespace cvtamber
