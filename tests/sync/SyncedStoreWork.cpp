// SPDX-License-Identifier: GPL-3.0-or-later
// What a person does on a synced store. False: what the command names is not listed, or it names no such work.
#include "sync/SyncedStore.h"

#include <QJsonArray>

namespace cvtamber {

using namespace Qt::StringLiterals;

// One opening of a document, up to its closing.
struct SyncedStore::Edit
{
    QJsonObject command;
    File file;
    QStringList texts;
    std::chrono::milliseconds hold{0};
    qsizetype saved = 0;
};

bool SyncedStore::workOnUser(const QString &what, const QJsonObject &command)
{
    const QString name = command[u"name"_s].toString();
    if (what == u"add user"_s) {
        _store.storage->activeUsers()->addUserWithFirstName(u"First "_s + name, u"Last "_s + name, name);
        answerAtRest(command);
        return true;
    }
    const User user = find(command[u"at"_s].toString()).user;
    if (!user || !what.endsWith(u" user"_s))
        return false;
    const auto registry = user->users();
    if (what == u"rename user"_s) {
        user->setFirstName(u"First "_s + name);
        user->setLastName(u"Last "_s + name);
        user->setDisplayName(name);
        answerAtRest(command);
    } else if (what == u"move user"_s) {
        const auto active = _store.storage->activeUsers();
        registry->moveUser(user, registry == active ? _store.storage->archivedUsers() : active);
        answerAtRest(command);
    } else {
        QStringList listed = listedIn(user);
        for (const Folder &folder : user->folders())
            listed += listedIn(folder);
        registry->deleteUser(user);
        answerAtRest(command, {{u"listed"_s, QJsonArray::fromStringList(listed)}});
    }
    return true;
}

bool SyncedStore::workOnFolder(const QString &what, const QJsonObject &command)
{
    const Place place = find(command[u"at"_s].toString());
    if (!place.user || !what.endsWith(u" folder"_s))
        return false;
    if (what == u"add folder"_s) {
        const Folder made = place.user->addFolderWithName(command[u"name"_s].toString());
        answerAtRest(command, {{u"at"_s, made ? pathOf(made->url()) : QString()}});
        return true;
    }
    const User target = find(command[u"to"_s].toString()).user;
    if (!place.folder || (what == u"move folder"_s && !target))
        return false;
    if (what == u"rename folder"_s)
        place.folder->rename(command[u"name"_s].toString());
    else if (what == u"move folder"_s)
        place.user->moveFolder(place.folder, target);
    const QStringList listed = listedIn(place.folder);
    if (what == u"delete folder"_s)
        place.user->deleteFolder(place.folder);
    answerAtRest(command, {{u"listed"_s, QJsonArray::fromStringList(listed)}});
    return true;
}

bool SyncedStore::workOnFile(const QString &what, const QJsonObject &command)
{
    const Place place = find(command[u"at"_s].toString());
    if (what == u"add"_s && place.container) {
        addFile(command, place.container);
        return true;
    }
    if (!place.file)
        return false;
    if (what == u"save"_s) {
        save(command, place.file);
        return true;
    }
    const Container target = find(command[u"to"_s].toString()).container;
    if (what == u"rename"_s)
        place.container->renameFileAtIndex(place.container->indexOfFile(place.file),
                                           command[u"title"_s].toString());
    else if (what == u"move"_s && target)
        place.container->moveFile(place.file, target);
    else if (what == u"delete"_s)
        place.container->deleteFile(place.file);
    else
        return false;
    answerAtRest(command, {{u"listed"_s, QJsonArray{pathOf(place.file->url())}}});
    return true;
}

void SyncedStore::addFile(const QJsonObject &command, const Container &container)
{
    const QString title = command[u"title"_s].toString();
    const QString text = command[u"text"_s].toString();
    const auto added = [this, command, container](const QString &asTitle, const FileResult &result) {
        const FileURL url = container->url().appendingFile(asTitle + u".tamber"_s);
        answer(command, result.ok(), {{u"at"_s, pathOf(url)}, {u"why"_s, result.message}});
    };
    if (command[u"free"_s].toBool())
        container->saveUnderFreeTitle(title, text, added);
    else
        container->addFileWithName(title, text,
                                   [added, title](const FileResult &result) { added(title, result); });
}

void SyncedStore::save(const QJsonObject &command, const File &file)
{
    const auto edit = std::make_shared<Edit>();
    edit->command = command;
    edit->file = file;
    edit->hold = std::chrono::milliseconds(command[u"hold"_s].toInt());
    for (const auto text : command[u"texts"_s].toArray())
        edit->texts.append(text.toString());
    file->openWithCompletionHandler([this, edit](bool isOpen) {
        if (!isOpen) {
            answer(edit->command, false, {{u"saved"_s, 0}});
            return;
        }
        _tell({{u"of"_s, edit->command[u"id"_s]}, {u"saw"_s, hashOf(edit->file->text().toUtf8())}});
        saveNext(edit);
    });
}

void SyncedStore::saveNext(const std::shared_ptr<Edit> &edit)
{
    if (edit->saved == edit->texts.size()) {
        edit->file->closeWithCompletionHandler([this, edit](bool) { finish(edit, true); });
        return;
    }
    _store.loop.performAfter(edit->hold, [this, edit] {
        const auto heard = [this, edit](bool success) {
            if (!success)
                return finish(edit, false);
            ++edit->saved;
            saveNext(edit);
        };
        const File &file = edit->file;
        file->setText(edit->texts[edit->saved]);
        if (edit->command[u"closing"_s].toBool() && edit->saved + 1 == edit->texts.size())
            file->closeWithCompletionHandler(heard);
        else
            file->saveToURL(file->url(), Document::SaveOperation::ForOverwriting, heard);
    });
}

void SyncedStore::finish(const std::shared_ptr<Edit> &edit, bool ok)
{
    answer(edit->command, ok, {{u"saved"_s, edit->saved}, {u"why"_s, edit->file->lastResult().message}});
}

} // namespace cvtamber
