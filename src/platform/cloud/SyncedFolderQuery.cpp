// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/SyncedFolderQuery.h"

#include <utility>

namespace cvtamber {

SyncedFolderQuery::SyncedFolderQuery(const FolderFollower::Surroundings &surroundings)
    : _surroundings(surroundings)
{}

SyncedFolderQuery::~SyncedFolderQuery() = default;

void SyncedFolderQuery::setPredicate(const FileURL &directory, const QString &filter)
{
    if (directory != _directory || filter != _filter)
        _tree.reset();
    _directory = directory;
    _filter = filter;
}

void SyncedFolderQuery::setHandlers(Handlers handlers)
{
    _handlers = std::move(handlers);
}

void SyncedFolderQuery::start()
{
    if (_follower)
        return;
    _isGathered = false;
    if (!_tree) {
        _results.clear();
        _tree = std::make_shared<FolderTree>(_directory);
    }
    _follower = std::make_shared<FolderFollower>(_surroundings, _tree, _filter,
                                                 [this](const auto &change) { apply(change); });
    _follower->setHeld(!_isEnabled);
    _follower->start();
}

void SyncedFolderQuery::stop()
{
    _follower.reset();
}

void SyncedFolderQuery::disableUpdates()
{
    _isEnabled = false;
    if (_follower)
        _follower->setHeld(true);
}

void SyncedFolderQuery::enableUpdates()
{
    _isEnabled = true;
    if (_follower)
        _follower->setHeld(false);
}

void SyncedFolderQuery::apply(const FolderTree::Change &change)
{
    const bool isDifferent = _results.apply(change.items, change.removed);
    const bool isFirst = !_isGathered && _follower->isWhole();
    if (!isFirst && !(_isGathered && isDifferent))
        return;
    _isGathered = true;
    // A copy: the handler may destroy the query.
    const auto handler = isFirst ? _handlers.gathered : _handlers.updated;
    if (handler)
        handler();
}

} // namespace cvtamber
