// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/documents/PathQueue.h"

#include "store/StoreNames.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

// The folder of a path, "/" above all; empty for that.
QString above(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash <= 0)
        return path.size() > 1 ? QStringLiteral("/") : QString();
    return path.first(slash);
}

} // namespace

class PathQueue::Ticket
{
public:
    struct Step
    {
        QString path;
        bool isClaim = false;
    };

    Ticket(const std::vector<QString> &paths, Begin begin)
        : _begin(std::move(begin))
    {
        for (const QString &path : paths) {
            QString step = comparableName(path);
            add({step, true});
            while (!(step = above(step)).isEmpty())
                add({step, false});
        }
        toPass = _steps.size();
    }

    const std::vector<Step> &steps() const { return _steps; }
    void begin() { std::exchange(_begin, nullptr)(); }

    // Nodes that do not let it begin yet.
    size_t toPass = 0;

private:
    // A claim contains a share.
    void add(const Step &step)
    {
        const auto same = std::find_if(_steps.begin(), _steps.end(),
                                       [&](const Step &other) { return other.path == step.path; });
        if (same == _steps.end())
            _steps.push_back(step);
        else
            same->isClaim = same->isClaim || step.isClaim;
    }

    std::vector<Step> _steps;
    Begin _begin;
};

void PathQueue::enter(Node &node, bool claim)
{
    ++node.begun;
    node.isClaimed = claim;
}

std::shared_ptr<PathQueue::Ticket> PathQueue::join(const std::vector<QString> &paths, Begin begin)
{
    auto ticket = std::make_shared<Ticket>(paths, std::move(begin));
    for (const Ticket::Step &step : ticket->steps()) {
        Node &node = _nodes[step.path];
        node.claims += step.isClaim ? 1 : 0;
        if (node.waiting.empty() && node.lets(step.isClaim)) {
            enter(node, step.isClaim);
            --ticket->toPass;
        } else {
            node.waiting.push_back({ticket, step.isClaim});
        }
    }
    if (ticket->toPass == 0)
        ticket->begin();
    return ticket;
}

void PathQueue::leave(const QString &path, bool claim, std::vector<std::shared_ptr<Ticket>> &ready)
{
    const auto found = _nodes.find(path);
    Node &node = found->second;
    --node.begun;
    node.claims -= claim ? 1 : 0;
    if (claim)
        node.isClaimed = false;
    while (!node.waiting.empty() && node.lets(node.waiting.front().isClaim)) {
        const Waiting next = std::move(node.waiting.front());
        node.waiting.pop_front();
        enter(node, next.isClaim);
        if (--next.ticket->toPass == 0)
            ready.push_back(next.ticket);
    }
    if (node.begun == 0)
        _nodes.erase(found);
}

void PathQueue::finish(const std::shared_ptr<Ticket> &ticket)
{
    std::vector<std::shared_ptr<Ticket>> ready;
    for (const Ticket::Step &step : ticket->steps())
        leave(step.path, step.isClaim, ready);
    for (const auto &next : ready)
        next->begin();
}

bool PathQueue::isBusy(const QString &path) const
{
    QString step = comparableName(path);
    if (_nodes.contains(step))
        return true;
    while (!(step = above(step)).isEmpty()) {
        const auto node = _nodes.find(step);
        if (node != _nodes.end() && node->second.claims > 0)
            return true;
    }
    return false;
}

} // namespace cvtamber
