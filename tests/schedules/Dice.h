// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <initializer_list>
#include <random>

namespace cvtamber {

// Numbers from a seed, the same on every machine: the standard fixes what this engine yields, but not what distributions
// make of it.
class Dice
{
public:
    explicit Dice(quint32 seed)
        : _engine(seed)
    {}
    // 0 to count - 1.
    int below(int count) { return static_cast<int>(_engine() % static_cast<quint32>(count)); }
    bool oneIn(int count) { return below(count) == 0; }
    template<typename T> T pick(std::initializer_list<T> values)
    {
        return values.begin()[below(static_cast<int>(values.size()))];
    }

private:
    std::mt19937 _engine;
};

} // namespace cvtamber
