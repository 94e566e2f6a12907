// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

#include <map>
#include <memory>
#include <vector>

namespace cvtamber {

class TamberUser;

// A registry's users in the order of coming, with an index by the name of their directory, so that finding
// one costs the same among ten thousand. Thread: main thread. Owner: the registry.
class UserList
{
public:
    using User = std::shared_ptr<TamberUser>;

    const std::vector<User> &users() const { return _users; }
    void append(const User &user);
    // Every place that the user has in the list.
    void remove(const User &user);
    // The first user of that URL; null when there is none.
    User findByURL(const FileURL &url) const;

private:
    User findUnder(const QString &folderName, const FileURL &url) const;

    std::vector<User> _users;
    // By the directory's name at the time of appending, those of one name in the order of the list. A user
    // that had no directory yet is under the null name.
    std::multimap<QString, User> _byFolderName;
};

} // namespace cvtamber
