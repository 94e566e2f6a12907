// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TableModel.h"

#include <algorithm>
#include <numeric>
#include <utility>

// The steps that lead from what is shown to what the table answers, each in its model signals.

namespace cvtamber {

namespace {

// A view takes each move by itself; beyond this one layout change is cheaper than the moves.
constexpr auto mostMoves = 64;

} // namespace

void TableModel::startTelling()
{
    _places.clear();
    for (int section = 0; section < static_cast<int>(_sections.size()); ++section)
        _places.push_back({section, {}});
}

void TableModel::changeSection(int section, const RowIdentities &now)
{
    if (*at(_sections, section) == now)
        return;
    const auto &places = at(_places, section)->rows;
    for (auto end = static_cast<int>(places.size()); end > 0;) {
        const auto isGone = *at(places, end - 1) < 0;
        auto first = end - 1;
        while (first > 0 && (*at(places, first - 1) < 0) == isGone)
            --first;
        if (isGone)
            dropRows(section, first, end - first);
        end = first;
    }
    if (!std::is_sorted(places.begin(), places.end()))
        order(section);
    const auto count = static_cast<int>(now.size());
    for (int row = 0; row < count; ++row) {
        const auto next = row < static_cast<int>(places.size()) ? *at(places, row) : count;
        if (next > row)
            addRows(section, row, now, next - row);
    }
}

void TableModel::removeSection(int section)
{
    dropRows(section, 0, shownRows(section));
    _sections.erase(at(_sections, section));
    _places.erase(at(_places, section));
}

void TableModel::addSection(int section, const RowIdentities &rows)
{
    _sections.insert(at(_sections, section), RowIdentities());
    _places.insert(at(_places, section), Place{section, {}});
    addRows(section, 0, rows, static_cast<int>(rows.size()));
}

void TableModel::dropRows(int section, int first, int count)
{
    if (count == 0)
        return;
    auto &rows = *at(_sections, section);
    auto &places = at(_places, section)->rows;
    const auto row = firstRow(section) + first;
    beginRemoveRows({}, row, row + count - 1);
    rows.erase(at(rows, first), at(rows, first + count));
    if (!places.empty())
        places.erase(at(places, first), at(places, first + count));
    _cachedRow = -1;
    endRemoveRows();
}

// The rows are `count` ones of `now` from `first` on, which is their place here and there.
void TableModel::addRows(int section, int first, const RowIdentities &now, int count)
{
    if (count == 0)
        return;
    auto &rows = *at(_sections, section);
    auto &places = at(_places, section)->rows;
    std::vector<int> added(static_cast<size_t>(count));
    std::iota(added.begin(), added.end(), first);
    const auto row = firstRow(section) + first;
    beginInsertRows({}, row, row + count - 1);
    rows.insert(at(rows, first), at(now, first), at(now, first + count));
    places.insert(at(places, first), added.begin(), added.end());
    _cachedRow = -1;
    endInsertRows();
}

void TableModel::order(int section)
{
    const auto &places = at(_places, section)->rows;
    const auto isStaying = stayingRows(places);
    if (std::count(isStaying.begin(), isStaying.end(), false) > mostMoves) {
        permute(section);
        return;
    }
    std::vector<int> moving;
    for (size_t row = 0; row < places.size(); ++row) {
        if (!isStaying[row])
            moving.push_back(places[row]);
    }
    std::sort(moving.begin(), moving.end());
    for (const auto place : moving) {
        // Behind the one that stands before it in the new order, which is right already among those before it.
        const auto from = static_cast<int>(std::find(places.begin(), places.end(), place) - places.begin());
        auto before = places.end();
        for (auto other = places.begin(); other != places.end(); ++other) {
            if (*other < place && (before == places.end() || *other > *before))
                before = other;
        }
        const auto to = before == places.end() ? 0 : static_cast<int>(before - places.begin()) + 1;
        if (to != from)
            moveRow(section, from, to);
    }
}

void TableModel::moveRow(int section, int from, int to)
{
    const auto start = firstRow(section);
    const auto move = [from, to](auto &list) {
        if (from < to)
            std::rotate(at(list, from), at(list, from + 1), at(list, to));
        else
            std::rotate(at(list, to), at(list, from), at(list, from + 1));
    };
    beginMoveRows({}, start + from, start + from, {}, start + to);
    move(*at(_sections, section));
    move(at(_places, section)->rows);
    _cachedRow = -1;
    endMoveRows();
}

void TableModel::permute(int section)
{
    auto &rows = *at(_sections, section);
    auto &places = at(_places, section)->rows;
    const auto start = firstRow(section);
    std::vector<int> origins(places.size());
    std::iota(origins.begin(), origins.end(), 0);
    std::sort(origins.begin(), origins.end(),
              [&](int left, int right) { return *at(places, left) < *at(places, right); });

    emit layoutAboutToBeChanged({}, VerticalSortHint);
    auto old = std::exchange(rows, RowIdentities(rows.size()));
    std::vector<int> targets(places.size());
    for (int row = 0; row < static_cast<int>(origins.size()); ++row) {
        *at(rows, row) = *at(old, *at(origins, row));
        *at(targets, *at(origins, row)) = row;
    }
    std::sort(places.begin(), places.end());
    const auto from = persistentIndexList();
    QModelIndexList to;
    for (const auto &kept : from) {
        const auto row = kept.row() - start;
        const auto isHere = row >= 0 && row < static_cast<int>(targets.size());
        to.append(isHere ? index(start + *at(targets, row)) : kept);
    }
    changePersistentIndexList(from, to);
    _cachedRow = -1;
    emit layoutChanged({}, VerticalSortHint);
}

} // namespace cvtamber
