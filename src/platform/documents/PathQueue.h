// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHashFunctions>
#include <QString>

#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace cvtamber {

// Lets work begin in the order in which it was asked for, as far as it concerns one item or an item and a
// folder that it lies in; the rest begins at once.
//
// A ticket: waiting -> begun -> finished. It claims its items for itself and shares every folder above them. A
// node for each such path holds who has begun and, behind them, who waits, first come first served; since
// a ticket joins all its queues at once, none can wait for each other. Each step costs the depth of the path,
// however many tickets wait. Letter case and Unicode's normal form make no difference: some file systems fold
// them. Thread: main thread only.
class PathQueue
{
public:
    class Ticket;
    using Begin = std::function<void()>;

    // `begin` is called once, at the latest when all that came before has finished; perhaps from inside.
    std::shared_ptr<Ticket> join(const std::vector<QString> &paths, Begin begin);
    // Of a ticket that has begun. Others may begin from inside.
    void finish(const std::shared_ptr<Ticket> &ticket);
    // A ticket is unfinished for this item, for one below it or for a folder above it.
    bool isBusy(const QString &path) const;

private:
    struct Waiting
    {
        std::shared_ptr<Ticket> ticket;
        bool isClaim = false;
    };
    struct Node
    {
        bool lets(bool claim) const { return begun == 0 || (!claim && !isClaimed); }

        // Tickets that this node lets begin, and whether the one of them claims it.
        size_t begun = 0;
        bool isClaimed = false;
        // Of both kinds together.
        size_t claims = 0;
        std::deque<Waiting> waiting;
    };
    using Nodes = std::unordered_map<QString, Node>;

    static void enter(Node &node, bool claim);
    void leave(const QString &path, bool claim, std::vector<std::shared_ptr<Ticket>> &ready);

    Nodes _nodes;
};

} // namespace cvtamber
