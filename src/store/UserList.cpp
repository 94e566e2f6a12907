// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/UserList.h"

#include "store/TamberUser.h"

#include <algorithm>

namespace cvtamber {

void UserList::append(const User &user)
{
    _users.push_back(user);
    _byFolderName.emplace(user->folder(), user);
}

void UserList::remove(const User &user)
{
    std::erase(_users, user);
    for (const QString &name : {user->folder(), QString()}) {
        const auto [from, to] = _byFolderName.equal_range(name);
        for (auto it = from; it != to;)
            it = it->second == user ? _byFolderName.erase(it) : std::next(it);
    }
}

UserList::User UserList::findByURL(const FileURL &url) const
{
    const User named = findUnder(url.lastPathComponent(), url);
    const User unnamed = findUnder(QString(), url);
    if (!named || !unnamed)
        return named ? named : unnamed;
    return *std::find_if(_users.begin(), _users.end(),
                         [&](const User &user) { return user == named || user == unnamed; });
}

UserList::User UserList::findUnder(const QString &folderName, const FileURL &url) const
{
    const auto [from, to] = _byFolderName.equal_range(folderName);
    const auto found =
        std::find_if(from, to, [&url](const auto &entry) { return entry.second->url() == url; });
    return found == to ? nullptr : found->second;
}

} // namespace cvtamber
