// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/text/BubbleSections.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace cvtamber {
namespace {

// Between dates in order, however far apart: their difference may not fit into a signed number.
bool isWithin(BubbleSections::Date earlier, BubbleSections::Date later, std::chrono::milliseconds interval)
{
    const auto apart =
        static_cast<std::uint64_t>(later.count()) - static_cast<std::uint64_t>(earlier.count());
    return interval.count() >= 0 && apart <= static_cast<std::uint64_t>(interval.count());
}

} // namespace

bool BubbleSections::add(std::span<const Date> dates)
{
    if (dates.empty())
        return true;
    const auto known = _order.size();
    _dates.insert(_dates.end(), dates.begin(), dates.end());
    _order.resize(_dates.size());
    const auto middle = _order.begin() + static_cast<std::ptrdiff_t>(known);
    std::iota(middle, _order.end(), static_cast<int>(known));
    const auto isEarlier = [this](int left, int right) {
        return _dates[static_cast<size_t>(left)] < _dates[static_cast<size_t>(right)];
    };
    if (!std::is_sorted(middle, _order.end(), isEarlier))
        std::stable_sort(middle, _order.end(), isEarlier);
    const auto stays = known == 0 || !isEarlier(*middle, *(middle - 1));
    if (!stays) {
        std::inplace_merge(_order.begin(), middle, _order.end(), isEarlier);
        _starts.clear();
        _rows.clear();
    }
    group(stays ? known : 0);
    return stays;
}

void BubbleSections::group(size_t from)
{
    for (auto position = from; position < _order.size(); ++position) {
        const auto bubble = _order[position];
        const auto date = [this](int number) { return _dates[static_cast<size_t>(number)]; };
        if (position == 0 || !isWithin(date(_order[position - 1]), date(bubble), _snapInterval)) {
            _starts.push_back(static_cast<int>(position));
            _rows.push_back(headerOf(bubble));
        }
        _rows.push_back(bubble);
    }
}

int BubbleSections::rowsOf(int section) const
{
    const auto bubbles = this->section(section).size();
    return bubbles == 0 ? 0 : static_cast<int>(bubbles) + 1;
}

std::span<const int> BubbleSections::section(int section) const
{
    if (section < 0 || section >= sectionCount())
        return {};
    const auto begin = static_cast<size_t>(_starts[static_cast<size_t>(section)]);
    const auto end = section + 1 < sectionCount()
                         ? static_cast<size_t>(_starts[static_cast<size_t>(section) + 1])
                         : _order.size();
    return std::span(_order).subspan(begin, end - begin);
}

BubbleSections::Place BubbleSections::placeOf(int index) const
{
    if (index < 0 || index >= static_cast<int>(_rows.size()))
        return {-1, -1};
    // A section stands as many rows further down as there are headers before it.
    int low = 0;
    int high = sectionCount();
    while (high - low > 1) {
        const auto section = low + (high - low) / 2;
        (_starts[static_cast<size_t>(section)] + section <= index ? low : high) = section;
    }
    return {low, index - _starts[static_cast<size_t>(low)] - low};
}

int BubbleSections::indexOf(Place place) const
{
    const auto isInside = place.row >= 0 && place.row < rowsOf(place.section);
    return isInside ? _starts[static_cast<size_t>(place.section)] + place.section + place.row : -1;
}

} // namespace cvtamber
