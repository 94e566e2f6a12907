// SPDX-License-Identifier: GPL-3.0-or-later
#include "powercut/DiskModel.h"

#include <QStringList>

#include <algorithm>

namespace cvtamber {

namespace {

constexpr size_t MostPendingForEverySubset = 12;
constexpr int RandomSubsets = 5000;

} // namespace

DiskModel::DiskModel(const TreeImage &tree)
{
    for (const auto &[path, bytes] : tree) {
        const Node node = newNode();
        _current[entryAt(path)] = node;
        if (bytes)
            _durableBytes[node] = *bytes;
        else
            _folders.insert(node);
    }
    _durable = _current;
}

DiskModel::Entry DiskModel::entryAt(const QString &path) const
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return {slash < 0 ? Node::Root : nodeAt(path.first(slash)), path.mid(slash + 1)};
}

DiskModel::Node DiskModel::nodeAt(const QString &path) const
{
    if (path.isEmpty())
        return Node::Root;
    const auto found = _current.find(entryAt(path));
    return found == _current.end() ? Node::None : found->second;
}

void DiskModel::apply(const RecordedCall &call)
{
    using What = RecordedCall::What;
    switch (call.what) {
    case What::CreateFile:
        addChange({{call.path, _createdFiles[call.file] = newNode()}});
        break;
    case What::Write:
        _unsyncedBytes[_createdFiles[call.file]] += call.bytes;
        break;
    case What::SyncFile:
        if (auto bytes = _unsyncedBytes.extract(_createdFiles[call.file]))
            _durableBytes[bytes.key()] += bytes.mapped();
        break;
    case What::MakeFolder:
        addChange({{call.path, *_folders.insert(newNode()).first}});
        break;
    case What::Rename:
        addChange({{call.path, Node::None}, {call.other, nodeAt(call.path)}});
        break;
    case What::Exchange:
        addChange({{call.path, nodeAt(call.other)}, {call.other, nodeAt(call.path)}});
        break;
    case What::Link:
        addChange({{call.other, nodeAt(call.path)}});
        break;
    case What::RemoveFile:
        addChange({{call.path, Node::None}});
        break;
    case What::RemoveFolder:
        addChange({{call.path, Node::None}}, true);
        break;
    case What::SyncFolder:
        makeDurable(nodeAt(call.path));
        break;
    case What::Done:
        break;
    }
}

void DiskModel::addChange(const std::vector<std::pair<QString, Node>> &edits, bool removesFolder)
{
    Change change;
    change.removesFolder = removesFolder;
    for (const auto &[path, after] : edits) {
        change.edits.push_back({entryAt(path), nodeAt(path), after});
        change.unsyncedFolders.insert(entryAt(path).first);
    }
    for (const Edit &edit : change.edits) {
        if (edit.after == Node::None)
            _current.erase(edit.entry);
        else
            _current[edit.entry] = edit.after;
    }
    _changes.push_back(change);
}

void DiskModel::makeDurable(Node folder)
{
    std::vector<bool> durable(_changes.size());
    for (size_t later = _changes.size(); later-- > 0;) {
        _changes[later].unsyncedFolders.erase(folder);
        durable[later] = durable[later] || _changes[later].unsyncedFolders.empty();
        for (size_t earlier = 0; durable[later] && earlier < later; ++earlier)
            durable[earlier] = durable[earlier] || dependsOn(_changes[later], _changes[earlier]);
    }
    std::vector<Change> pending;
    for (size_t number = 0; number < _changes.size(); ++number) {
        if (!durable[number])
            pending.push_back(_changes[number]);
        for (const Edit &edit : durable[number] ? _changes[number].edits : std::vector<Edit>())
            _durable[edit.entry] = edit.after;
    }
    _changes = std::move(pending);
}

bool DiskModel::dependsOn(const Change &later, const Change &earlier)
{
    return std::any_of(later.edits.begin(), later.edits.end(), [&](const Edit &edit) {
        return std::any_of(earlier.edits.begin(), earlier.edits.end(), [&](const Edit &before) {
            return before.entry == edit.entry || (later.removesFolder && before.entry.first == edit.before);
        });
    });
}

bool DiskModel::isPossible(const Choice &choice, size_t change) const
{
    for (size_t earlier = 0; earlier < change; ++earlier) {
        if (!choice.changes[earlier] && dependsOn(_changes[change], _changes[earlier]))
            return false;
    }
    return true;
}

void DiskModel::visitTrees(quint32 seed, const std::function<void(const TreeImage &)> &visit) const
{
    if (pendingCount() <= MostPendingForEverySubset) {
        Choice choice;
        visitChanges(choice, [&](const Choice &made) { visit(treeOf(made)); });
        return;
    }
    QRandomGenerator random(seed);
    for (int number = 0; number < RandomSubsets; ++number)
        visit(treeOf(randomChoice(random)));
}

void DiskModel::visitChanges(Choice &choice, const std::function<void(const Choice &)> &visit) const
{
    const size_t next = choice.changes.size();
    if (next == _changes.size()) {
        visitBytes(choice, _unsyncedBytes.begin(), visit);
        return;
    }
    const bool isPossibleNext = isPossible(choice, next);
    for (const bool isThere : {false, true}) {
        if (isThere && !isPossibleNext)
            continue;
        choice.changes.push_back(isThere);
        visitChanges(choice, visit);
        choice.changes.pop_back();
    }
}

void DiskModel::visitBytes(Choice &choice, std::map<Node, QByteArray>::const_iterator next,
                           const std::function<void(const Choice &)> &visit) const
{
    if (next == _unsyncedBytes.end()) {
        visit(choice);
        return;
    }
    for (const BytesFound found : {BytesFound::None, BytesFound::Cut, BytesFound::All}) {
        choice.bytes[next->first] = found;
        visitBytes(choice, std::next(next), visit);
    }
}

DiskModel::Choice DiskModel::randomChoice(QRandomGenerator &random) const
{
    // Some choices with little of it on the disk, some with nearly all.
    const quint32 percent = random.bounded(5U, 96U);
    Choice choice;
    for (size_t number = 0; number < _changes.size(); ++number)
        choice.changes.push_back(random.bounded(100U) < percent && isPossible(choice, number));
    for (const auto &[file, bytes] : _unsyncedBytes)
        choice.bytes[file] = BytesFound(random.bounded(3));
    return choice;
}

TreeImage DiskModel::treeOf(const Choice &choice) const
{
    Entries entries = _durable;
    for (size_t number = 0; number < _changes.size(); ++number) {
        for (const Edit &edit : choice.changes[number] ? _changes[number].edits : std::vector<Edit>())
            entries[edit.entry] = edit.after;
    }
    TreeImage tree;
    addFolder(tree, {}, Node::Root, entries, choice);
    return tree;
}

TreeImage DiskModel::current() const
{
    Choice choice;
    for (const auto &[file, bytes] : _unsyncedBytes)
        choice.bytes[file] = BytesFound::All;
    TreeImage tree;
    addFolder(tree, {}, Node::Root, _current, choice);
    return tree;
}

void DiskModel::addFolder(TreeImage &tree, const QString &path, Node folder, const Entries &entries,
                          const Choice &choice) const
{
    for (auto it = entries.lower_bound({folder, {}}); it != entries.end() && it->first.first == folder;
         ++it) {
        const auto &[entry, node] = *it;
        if (node == Node::None)
            continue;
        const QString name = path + entry.second;
        if (_folders.count(node) == 0) {
            tree[name] = bytesOf(node, choice);
            continue;
        }
        tree[name] = std::nullopt;
        addFolder(tree, name + u'/', node, entries, choice);
    }
}

QByteArray DiskModel::bytesOf(Node file, const Choice &choice) const
{
    const auto durable = _durableBytes.find(file);
    QByteArray bytes = durable == _durableBytes.end() ? QByteArray("") : durable->second;
    const auto unsynced = _unsyncedBytes.find(file);
    if (unsynced == _unsyncedBytes.end())
        return bytes;
    switch (choice.bytes.at(file)) {
    case BytesFound::None:
        return bytes;
    case BytesFound::Cut:
        return bytes + unsynced->second.first(unsynced->second.size() / 2);
    case BytesFound::All:
        break;
    }
    return bytes + unsynced->second;
}

} // namespace cvtamber
