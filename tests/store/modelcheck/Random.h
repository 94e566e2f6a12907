// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <random>
#include <utility>

namespace cvtamber {

// The same numbers for the same seed on every machine, which the standard's distributions do not promise.
class Random
{
public:
    explicit Random(quint32 seed)
        : _engine(seed)
    {}

    // 0 to below `count`, which is at least 1.
    template<typename Count> Count below(Count count)
    {
        return static_cast<Count>(_engine() % quint32(count));
    }
    bool oneIn(int count) { return below(count) == 0; }
    template<typename List> const auto &pick(const List &list)
    {
        return *std::next(list.begin(), std::ptrdiff_t(below(list.size())));
    }
    template<typename List> void shuffle(List &list)
    {
        for (auto i = list.size(); i > 1; --i)
            std::swap(list[i - 1], list[below(i)]);
    }

private:
    std::mt19937 _engine;
};

} // namespace cvtamber
