// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/RowDifference.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace cvtamber {

namespace {

struct CommonEnds
{
    int start = 0;
    int end = 0;
};

template<typename List> CommonEnds commonEnds(const List &old, const List &now)
{
    const auto start = std::mismatch(old.begin(), old.end(), now.begin(), now.end()).first - old.begin();
    const auto rest = static_cast<std::ptrdiff_t>(std::min(old.size(), now.size())) - start;
    const auto end = std::mismatch(old.rbegin(), old.rbegin() + rest, now.rbegin()).first - old.rbegin();
    return {static_cast<int>(start), static_cast<int>(end)};
}

// The places of what is the same at both ends, -1 between.
std::vector<int> placesOfEnds(int oldCount, int newCount, CommonEnds ends)
{
    std::vector<int> places(static_cast<size_t>(oldCount), -1);
    std::iota(places.begin(), places.begin() + ends.start, 0);
    std::iota(places.end() - ends.end, places.end(), newCount - ends.end);
    return places;
}

} // namespace

std::vector<int> placesOf(const RowIdentities &old, const RowIdentities &now)
{
    const auto ends = commonEnds(old, now);
    const auto oldCount = static_cast<int>(old.size());
    const auto newCount = static_cast<int>(now.size());
    auto places = placesOfEnds(oldCount, newCount, ends);
    // For each identity the first old row that has no place yet; the next one of the same is chained behind it.
    std::unordered_map<quintptr, int> first;
    std::vector<int> next(old.size(), -1);
    for (int row = oldCount - ends.end - 1; row >= ends.start; --row) {
        const auto [found, isNew] = first.try_emplace(old[static_cast<size_t>(row)], row);
        if (!isNew) {
            next[static_cast<size_t>(row)] = found->second;
            found->second = row;
        }
    }
    for (int row = ends.start; row < newCount - ends.end; ++row) {
        const auto found = first.find(now[static_cast<size_t>(row)]);
        if (found == first.end() || found->second < 0)
            continue;
        const auto oldRow = static_cast<size_t>(found->second);
        places[oldRow] = row;
        found->second = next[oldRow];
    }
    return places;
}

std::vector<int> sectionPlaces(const std::vector<RowIdentities> &old, const std::vector<RowIdentities> &now)
{
    const auto ends = commonEnds(old, now);
    const auto oldCount = static_cast<int>(old.size());
    const auto newCount = static_cast<int>(now.size());
    auto places = placesOfEnds(oldCount, newCount, ends);
    const auto paired = std::min(oldCount, newCount) - ends.end;
    for (int section = ends.start; section < paired; ++section)
        places[static_cast<size_t>(section)] = section;
    return places;
}

std::vector<bool> stayingRows(const std::vector<int> &places)
{
    // The longest ascending run: for each length the row with the smallest place that ends a run of it.
    std::vector<size_t> lastOf;
    std::vector<size_t> before(places.size(), places.size());
    for (size_t row = 0; row < places.size(); ++row) {
        const auto found = std::lower_bound(lastOf.begin(), lastOf.end(), places[row],
                                            [&](size_t last, int place) { return places[last] < place; });
        if (found != lastOf.begin())
            before[row] = *(found - 1);
        if (found == lastOf.end())
            lastOf.push_back(row);
        else
            *found = row;
    }
    std::vector<bool> isStaying(places.size(), false);
    for (auto row = lastOf.empty() ? places.size() : lastOf.back(); row < places.size(); row = before[row])
        isStaying[row] = true;
    return isStaying;
}

} // namespace cvtamber
