// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <span>
#include <vector>

namespace cvtamber {

// The bubbles of a conversation sorted by date and grouped: a section is a run of neighbours that follow each other by
// at most the snap interval. Bubbles are known by numbers, in the order in which they were added: 0, 1, 2 ...
//
// As rows one after the other, each section has its header and then its bubbles. Bubbles that are added in the order of
// their dates cost what they are; an earlier one among them costs a merge of all.
// Thread: any, one at a time.
class BubbleSections
{
public:
    // Since the start of 1970.
    using Date = std::chrono::milliseconds;
    struct Place
    {
        int section = 0;
        // 0: the header.
        int row = 0;

        bool operator==(const Place &) const = default;
    };

    explicit BubbleSections(std::chrono::milliseconds snapInterval)
        : _snapInterval(snapInterval)
    {}

    // Bubbles of one date keep the order in which they are added. Whether all rows that stood before stay where they
    // are, so that the new ones follow them.
    bool add(std::span<const Date> dates);

    int bubbleCount() const { return static_cast<int>(_order.size()); }
    int sectionCount() const { return static_cast<int>(_starts.size()); }
    // With the header; 0 outside.
    int rowsOf(int section) const;
    // The numbers of the bubbles of a section, in order; empty outside.
    std::span<const int> section(int section) const;

    // All rows: a bubble's number, or headerOf() the number of the first bubble of its section.
    const std::vector<int> &rows() const { return _rows; }
    static constexpr int headerOf(int bubble) { return -1 - bubble; }
    static constexpr bool isHeader(int row) { return row < 0; }
    // The bubble of a row; of a header the first of its section.
    static constexpr int bubbleOf(int row) { return row < 0 ? -1 - row : row; }
    // Of an index of rows(), in logarithmic time; {-1, -1} outside.
    Place placeOf(int index) const;
    // The index in rows(); -1 outside.
    int indexOf(Place place) const;

private:
    void group(size_t from);

    std::chrono::milliseconds _snapInterval;
    std::vector<Date> _dates; // by number
    std::vector<int> _order;  // numbers by date
    std::vector<int> _starts; // where sections begin in _order
    std::vector<int> _rows;
};

} // namespace cvtamber
