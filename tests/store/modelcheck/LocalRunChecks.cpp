// SPDX-License-Identifier: GPL-3.0-or-later
// What comes in between, and what must be true at rest.
#include "store/modelcheck/LocalRun.h"

#include <QDir>

namespace cvtamber {

using namespace Qt::StringLiterals;

void LocalRun::disturb()
{
    if (isDisturbed() && _bench.random.oneIn(2))
        return actFromOutside();
    if (!isDisturbed() && _bench.random.oneIn(3))
        return copyUserIn();
    if (!isDisturbed() && _bench.random.oneIn(4))
        return _bench.startAnew();
    _bench.failCalls(isDisturbed() ? 3 : 20);
}

// A user's directory is on its way, or arrives.
void LocalRun::copyUserIn()
{
    if (_bench.random.oneIn(2))
        return finishCopies();
    const QString place = u"ActiveUsers/0000C0B1-0000-0000-0000-%1"_s.arg(++_copied, 12, 10, QChar(u'0'));
    const QString text = _bench.freshText();
    _bench.story.append(u"copy in "_s + place);
    _bench.rig.put(place + u"/Copied.tamber", text.toUtf8());
    _bench.owe(text, place);
    _copies.append(place);
}

void LocalRun::finishCopies()
{
    for (const QString &place : std::exchange(_copies, {}))
        // Unless the store has written one since.
        if (!_bench.rig.has(place + u"/user.txt"))
            _bench.rig.put(place + u"/user.txt", "Copied\n\n\n");
}

// Another program adds, edits, renames or removes a document, or a record.
void LocalRun::actFromOutside()
{
    const Container container = anyContainer();
    if (!container)
        return;
    const File file = anyFile(container);
    const FileURL url =
        file && _bench.random.oneIn(2)
            ? file->url()
            : container->url().appendingFile(u"Outside %1.tamber"_s.arg(_bench.random.below(3)));
    const QString place = _bench.placeOf(url);
    if (!_bench.isFree(url) || !QDir(container->url().path()).exists())
        return;
    const QString old = QString::fromUtf8(_bench.rig.bytes(place));
    const QString text = _bench.freshText();
    switch (_bench.random.below(5)) {
    case 0:
        tell(u"outside removes"_s, url);
        _bench.forgive(old);
        _bench.rig.erase(place);
        break;
    case 1:
        tell(u"outside renames"_s, url);
        QFile::rename(url.path(), container->url().appendingFile(u"Renamed.tamber"_s).path());
        break;
    case 2:
        tell(u"outside removes the record"_s, container->url());
        _bench.rig.erase(_bench.placeOf(container->url()) +
                         (_bench.random.oneIn(2) ? u"/user.txt"_s : u"/folder.dat"_s));
        break;
    default:
        tell(u"outside writes"_s, url, text);
        _bench.forgive(old);
        _bench.rig.put(place, text.toUtf8());
        _bench.owe(text, place);
    }
}

LocalRun::User LocalRun::anyUser()
{
    const auto users = _bench.users();
    if (users.empty())
        return nullptr;
    const User user = _bench.random.pick(users);
    return mayTouch(user->url()) && !_bench.isDying(_bench.placeOf(user->url())) ? user : nullptr;
}

LocalRun::Folder LocalRun::anyFolder(const User &user)
{
    return user && user->foldersCount() > 0 ? _bench.random.pick(user->folders()) : nullptr;
}

// Anything may be going on in a container, unless it is about to go itself.
LocalRun::Container LocalRun::anyContainer()
{
    const auto containers = _bench.containers();
    if (containers.empty())
        return nullptr;
    return _bench.random.pick(containers);
}

LocalRun::File LocalRun::anyFile(const Container &container)
{
    if (!container || container->files().empty())
        return nullptr;
    const File file = _bench.random.pick(container->files());
    return mayTouch(file->url()) ? file : nullptr;
}

bool LocalRun::mayTouch(const FileURL &url) const
{
    return isDisturbed() || _bench.isFree(url);
}

void LocalRun::tell(const QString &what, const FileURL &url, const QString &more)
{
    _bench.story.append(what % u' ' % _bench.placeOf(url) % u' ' % more);
}

void LocalRun::forgetPlace(const QString &place)
{
    std::erase_if(_model, [&](const auto &entry) { return isBelow(entry.first, place); });
}

void LocalRun::rebase(const QString &from, const QString &to)
{
    StoreListing moved;
    for (const auto &[place, value] : _model)
        moved.emplace(isBelow(place, from) ? QString(to % place.sliced(from.size())) : place, value);
    _model = moved;
}

// Null when all that is listed is on the disk as it is listed. What was deleted may be there and not be listed.
QString LocalRun::notOnDisk(const StoreListing &listed) const
{
    const StoreListing directory = _bench.directoryListing();
    for (const auto &[place, value] : listed) {
        const auto found = directory.find(place);
        // A record that could not be read leaves no name, and may not be there at all.
        // It is written at the end where it is not.
        const auto user = listed.find(place.section(u'/', 0, 1));
        const bool isUnread = value.isEmpty() || (user != listed.end() && user->second == u"||");
        const bool isThere = found != directory.end() && found->second == value;
        if (!isThere && !isUnread && !_bench.isDying(place))
            return u"listed and not so on the disk: "_s + place;
    }
    return {};
}

// As a screen does that is entered.
void LocalRun::refreshAll()
{
    for (const Container &container : _bench.containers())
        container->refresh();
    _bench.settleAll();
}

QString LocalRun::faultAtRest()
{
    _bench.story.append(u"rest"_s);
    _bench.endFailures();
    _bench.settleAll();
    if (_kind == Kind::Failing)
        refreshAll();
    const StoreListing listed = listingOf(*_bench.storage, _bench.rig.disk);
    finishCopies();
    QString unlisted = _kind == Kind::Failing ? notOnDisk(listed) : QString();
    if (!unlisted.isNull())
        return unlisted;
    // What is asked for at the end is done before the next start.
    _bench.storage->close();
    _bench.settleAll();
    _bench.open();
    _bench.settleAll();
    _bench.atRest();
    const StoreListing directory = _bench.directoryListing();
    QString fault = difference(listingOf(*_bench.storage, _bench.rig.disk), directory);
    if (!fault.isEmpty())
        return u"opened anew, against the directory:\n"_s + fault;
    const QStringList lost = _bench.lostTexts();
    if (!lost.isEmpty())
        return u"lost: "_s + lost.join(u", "_s);
    if (_kind != Kind::Undisturbed)
        return {};
    fault = difference(directory, _model);
    if (!fault.isEmpty())
        return u"the directory, against the model:\n"_s + fault;
    fault = difference(listed, _model);
    return fault.isEmpty() ? QString() : QString(u"the lists, against the model:\n"_s + fault);
}

} // namespace cvtamber
