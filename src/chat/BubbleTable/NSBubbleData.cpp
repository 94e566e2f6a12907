// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/BubbleTable/NSBubbleData.h"

#include <utility>

namespace cvtamber {
namespace {

// More at the bottom and on the side of the tail, where the bubble's image is not filled.
constexpr BubbleInsets InsetsMine{5, 10, 11, 17};
constexpr BubbleInsets InsetsSomeone{5, 15, 11, 10};

const BubbleInsets &insetsFor(NSBubbleType type)
{
    return type == NSBubbleType::Mine ? InsetsMine : InsetsSomeone;
}

} // namespace

NSBubbleData::NSBubbleData(const QString &text, const QDateTime &date, NSBubbleType type)
    : NSBubbleData(BubbleView{text, {}}, date, type, insetsFor(type))
{}

NSBubbleData::NSBubbleData(const BubbleImage &image, const QDateTime &date, NSBubbleType type)
    : NSBubbleData(BubbleView{{}, image}, date, type, insetsFor(type))
{}

NSBubbleData::NSBubbleData(BubbleView view, const QDateTime &date, NSBubbleType type,
                           const BubbleInsets &insets)
    : _date(date)
    , _type(type)
    , _view(std::move(view))
    , _insets(insets)
{}

std::shared_ptr<NSBubbleData> NSBubbleData::dataWithText(const QString &text, const QDateTime &date,
                                                         NSBubbleType type)
{
    return std::make_shared<NSBubbleData>(text, date, type);
}

std::shared_ptr<NSBubbleData> NSBubbleData::dataWithImage(const BubbleImage &image, const QDateTime &date,
                                                          NSBubbleType type)
{
    return std::make_shared<NSBubbleData>(image, date, type);
}

} // namespace cvtamber
