// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/modelcheck/LocalRun.h"

#include "store/StoreNames.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

constexpr int Steps = 60;

const QStringList &names()
{
    static const QStringList list{u"Anna"_s, u"Berg"_s, u""_s, u"Maths"_s, u"maths"_s, u"\u4e2d\u6587"_s};
    return list;
}

QString joined(const TamberUser &user)
{
    return user.firstName() + u'|' + user.lastName() + u'|' + user.displayName();
}

} // namespace

LocalRun::LocalRun(quint32 seed, Kind kind)
    : _kind(kind)
    , _bench(seed, StoreRig::Place::Local)
{}

QString LocalRun::run()
{
    for (int i = 0; i < Steps; ++i) {
        step();
        _bench.someBackgroundWork();
        if (_kind != Kind::Undisturbed && _bench.random.oneIn(4))
            disturb();
        if (!_bench.random.oneIn(12) && i + 1 < Steps)
            continue;
        QString fault = faultAtRest();
        if (!fault.isNull())
            return fault;
    }
    return {};
}

void LocalRun::step()
{
    using Step = void (LocalRun::*)();
    static const std::vector<Step> steps{
        &LocalRun::addUser,    &LocalRun::renameUser,   &LocalRun::deleteUser, &LocalRun::moveUser,
        &LocalRun::addFolder,  &LocalRun::renameFolder, &LocalRun::addFolder,  &LocalRun::moveFolder,
        &LocalRun::addFile,    &LocalRun::renameFile,   &LocalRun::deleteFile, &LocalRun::moveFile,
        &LocalRun::editFile,   &LocalRun::addFile,      &LocalRun::addFile,    &LocalRun::addFile,
        &LocalRun::renameFile, &LocalRun::moveFile,     &LocalRun::editFile,   &LocalRun::deleteFolder};
    (this->*_bench.random.pick(steps))();
}

void LocalRun::addUser()
{
    const auto registry = _bench.random.pick(_bench.registries());
    registry->addUserWithFirstName(_bench.random.pick(names()), _bench.random.pick(names()),
                                   _bench.random.pick(names()));
    if (registry->users().empty())
        return;
    const User user = registry->users().back();
    tell(u"add user"_s, user->url());
    _model[_bench.placeOf(user->url())] = joined(*user);
}

void LocalRun::renameUser()
{
    const User user = anyUser();
    if (!user)
        return;
    user->setFirstName(_bench.random.pick(names()));
    user->setDisplayName(_bench.random.pick(names()));
    tell(u"rename user"_s, user->url(), joined(*user));
    _model[_bench.placeOf(user->url())] = joined(*user);
}

void LocalRun::deleteUser()
{
    const User user = anyUser();
    if (!user || isBusy(user->url()) || !_bench.random.oneIn(3))
        return;
    tell(u"delete user"_s, user->url());
    _bench.forgiveListed(*user);
    for (const Folder &folder : user->folders())
        _bench.forgiveListed(*folder);
    forgetPlace(_bench.placeOf(user->url()));
    _bench.setDying(_bench.placeOf(user->url()));
    user->users()->deleteUser(user);
}

void LocalRun::moveUser()
{
    const User user = anyUser();
    if (!user)
        return;
    const auto from = user->users();
    const auto to = _bench.registries()[from == _bench.registries()[0] ? 1 : 0];
    const QString place = _bench.placeOf(user->url());
    tell(u"move user"_s, user->url(), _bench.placeOf(to->url()));
    from->moveUser(user, to);
    rebase(place, _bench.placeOf(to->url()) + u'/' + user->folder());
}

void LocalRun::addFolder()
{
    const User user = anyUser();
    if (!user)
        return;
    const Folder folder = user->addFolderWithName(_bench.random.pick(names()));
    if (!folder)
        return;
    tell(u"add folder"_s, folder->url(), folder->name());
    _model[_bench.placeOf(folder->url())] = folder->name();
}

void LocalRun::renameFolder()
{
    const Folder folder = anyFolder(anyUser());
    if (!folder)
        return;
    const QString name = _bench.random.pick(names());
    tell(u"rename folder"_s, folder->url(), name);
    folder->setName(name);
    _model[_bench.placeOf(folder->url())] = name;
}

void LocalRun::deleteFolder()
{
    const User user = anyUser();
    const Folder folder = anyFolder(user);
    if (!folder || isBusy(folder->url()))
        return;
    tell(u"delete folder"_s, folder->url());
    _bench.forgiveListed(*folder);
    forgetPlace(_bench.placeOf(folder->url()));
    _bench.setDying(_bench.placeOf(folder->url()));
    user->deleteFolder(folder);
}

void LocalRun::moveFolder()
{
    const User user = anyUser();
    const Folder folder = anyFolder(user);
    const User target = anyUser();
    if (!folder || !target || target == user)
        return;
    const QString place = _bench.placeOf(folder->url());
    tell(u"move folder"_s, folder->url(), _bench.placeOf(target->url()));
    user->moveFolder(folder, target);
    rebase(place, _bench.placeOf(target->url()) + u'/' + folder->storageName());
    _bench.reserve(_bench.placeOf(target->url()) + u'/' + folder->storageName());
}

void LocalRun::addFile()
{
    const Container container = anyContainer();
    if (!container)
        return;
    QString title = _bench.anyTitle();
    if (!isDisturbed() || _bench.random.oneIn(2))
        title = nextFreeTitle(title, [&](const QString &one) { return container->fileExists(one); });
    const FileURL url = container->url().appendingFile(documentFileName(title));
    const QString place = _bench.placeOf(url);
    if (!mayTouch(url) || (!isDisturbed() && _model.count(place) != 0))
        return;
    const QString text = _bench.freshText();
    tell(u"add"_s, url, text);
    _model[place] = text;
    container->addFileWithName(title, text, [this, text, place](const FileResult &result) {
        if (result.ok())
            _bench.owe(text, place);
    });
}

void LocalRun::renameFile()
{
    const Container container = anyContainer();
    const File file = anyFile(container);
    if (!file)
        return;
    const QString title = _bench.anyTitle();
    const FileURL to = container->url().appendingFile(documentFileName(title));
    if (!mayTouch(to))
        return;
    tell(u"rename"_s, file->url(), to.lastPathComponent());
    const QString from = _bench.placeOf(file->url());
    container->renameFileAtIndex(container->indexOfFile(file), title);
    if (!title.isEmpty() && _model.count(_bench.placeOf(to)) == 0)
        rebase(from, _bench.placeOf(to));
}

void LocalRun::deleteFile()
{
    const Container container = anyContainer();
    const File file = anyFile(container);
    if (!file || isBusy(file->url()))
        return;
    tell(u"delete"_s, file->url());
    _bench.forgive(_bench.textAt(file->url()));
    _bench.setDying(_bench.placeOf(file->url()));
    forgetPlace(_bench.placeOf(file->url()));
    container->deleteFile(file);
}

void LocalRun::moveFile()
{
    const Container container = anyContainer();
    const File file = anyFile(container);
    const Container target = anyContainer();
    if (!file || target == container)
        return;
    const FileURL to = target->url().appendingFile(file->name());
    const QString place = _bench.placeOf(to);
    if (!mayTouch(to) || _bench.isDying(place) ||
        (!isDisturbed() && target->fileExists(to.nameWithoutExtension())))
        return;
    tell(u"move"_s, file->url(), place);
    const QString from = _bench.placeOf(file->url());
    container->moveFile(file, target);
    rebase(from, place);
}

void LocalRun::editFile()
{
    const File file = anyFile(anyContainer());
    // One edit at a time: the second would replace a text that the first has not saved yet.
    if (!file || _bench.isReserved(_bench.placeOf(file->url())))
        return;
    const QString text = _bench.freshText();
    const QString place = _bench.placeOf(file->url());
    tell(u"edit"_s, file->url(), text);
    _model[place] = text;
    // Until it is closed again it is nobody else's.
    _bench.reserve(place);
    file->openWithCompletionHandler([this, file, text, place](bool isOpen) {
        if (!isOpen)
            return;
        _bench.forgive(file->text());
        file->setText(text);
        file->closeWithCompletionHandler([this, text, place](bool isClosed) {
            if (isClosed)
                _bench.owe(text, place);
        });
    });
}

} // namespace cvtamber
