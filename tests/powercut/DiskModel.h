// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "powercut/RecordingFileOperations.h"
#include "powercut/TreeImage.h"

#include <QRandomGenerator>

#include <functional>
#include <set>
#include <vector>

namespace cvtamber {

// What can be on a disk when the power goes: calls go in as they were recorded, trees come out.
//
// It is assumed of the file system:
// - the bytes of a file are there once the file was synced; before that all of them, none or a part;
// - a change of names is there once every folder whose names it changed was synced; before that it is there or not, in
//   one piece also between two folders;
// - changes of one name reach the disk in their order, so a rename is not there without the file that was made
//   under the name; a folder is not gone before what was in it;
// - nothing else is in order: a name may be there before the bytes of its file, a folder's content before the folder
//   (it is then lost with it), the second of two links before the first.
// That is less than the journals of common file systems keep, so what survives here survives there.
class DiskModel
{
public:
    // All of the tree is on the disk.
    explicit DiskModel(const TreeImage &tree);

    void apply(const RecordedCall &call);
    // As a program sees it that runs on.
    TreeImage current() const;
    // Every tree that can be found if the power goes now when at most 12 calls are not durable, else 5,000 chosen by
    // the seed. Equal ones may come again.
    void visitTrees(quint32 seed, const std::function<void(const TreeImage &)> &visit) const;
    // Calls that are not durable.
    size_t pendingCount() const { return _changes.size() + _unsyncedBytes.size(); }

private:
    // An item, as the file system counts them; names come and go.
    enum class Node { None, Root };
    using Entry = std::pair<Node, QString>;
    using Entries = std::map<Entry, Node>;

    struct Edit
    {
        Entry entry;
        Node before;
        Node after;
    };
    // Edits that happen together.
    struct Change
    {
        std::vector<Edit> edits;
        std::set<Node> unsyncedFolders;
        bool removesFolder = false;
    };
    enum class BytesFound { None, Cut, All };
    // One choice of what has reached the disk.
    struct Choice
    {
        std::vector<bool> changes;
        std::map<Node, BytesFound> bytes;
    };

    Node newNode() { return Node(++_lastNode); }
    Entry entryAt(const QString &path) const;
    Node nodeAt(const QString &path) const;
    void addChange(const std::vector<std::pair<QString, Node>> &edits, bool removesFolder = false);
    void makeDurable(Node folder);
    static bool dependsOn(const Change &later, const Change &earlier);
    bool isPossible(const Choice &choice, size_t change) const;
    void visitChanges(Choice &choice, const std::function<void(const Choice &)> &visit) const;
    void visitBytes(Choice &choice, std::map<Node, QByteArray>::const_iterator next,
                    const std::function<void(const Choice &)> &visit) const;
    Choice randomChoice(QRandomGenerator &random) const;
    TreeImage treeOf(const Choice &choice) const;
    void addFolder(TreeImage &tree, const QString &path, Node folder, const Entries &entries,
                   const Choice &choice) const;
    QByteArray bytesOf(Node file, const Choice &choice) const;

    int _lastNode = int(Node::Root);
    Entries _durable;
    Entries _current;
    std::set<Node> _folders{Node::Root};
    std::map<Node, QByteArray> _durableBytes;
    std::map<Node, QByteArray> _unsyncedBytes;
    // Not durable, in their order.
    std::vector<Change> _changes;
    std::map<int, Node> _createdFiles;
};

} // namespace cvtamber
