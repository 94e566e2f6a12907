// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QSizeF>
#include <QString>

#include <memory>

namespace cvtamber {

enum class NSBubbleType { Mine = 0, SomeoneElse = 1 };

// The indicator that somebody is typing: none, else whose bubble it is.
enum class NSBubbleTypingType { None = 0, SomeoneElse = 1, Mine = 2 };

// Free room around the content of a bubble, in units of the screen.
struct BubbleInsets
{
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;

    bool operator==(const BubbleInsets &) const = default;
};

// A picture: an image's name in the program's resources, or its address, and its size in units of the screen.
struct BubbleImage
{
    QString source;
    QSizeF size;

    bool operator==(const BubbleImage &) const = default;
};

// What stands in a bubble, as a value: a picture where its source is not empty, else a text. A text has no size of its
// own: the table measures it in the font that it is drawn in.
struct BubbleView
{
    QString text;
    BubbleImage image;

    bool isImage() const { return !image.source.isEmpty(); }
    bool operator==(const BubbleView &) const = default;
};

// One bubble of a conversation. What was handed to a table stays as it is.
// Thread: main thread. Owner: shared by the conversation and the tables that show it.
class NSBubbleData
{
public:
    NSBubbleData(const QString &text, const QDateTime &date, NSBubbleType type);
    NSBubbleData(const BubbleImage &image, const QDateTime &date, NSBubbleType type);
    NSBubbleData(BubbleView view, const QDateTime &date, NSBubbleType type, const BubbleInsets &insets);

    static std::shared_ptr<NSBubbleData> dataWithText(const QString &text, const QDateTime &date,
                                                      NSBubbleType type);
    static std::shared_ptr<NSBubbleData> dataWithImage(const BubbleImage &image, const QDateTime &date,
                                                       NSBubbleType type);

    const QDateTime &date() const { return _date; }
    NSBubbleType type() const { return _type; }
    bool isMine() const { return _type == NSBubbleType::Mine; }
    const BubbleView &view() const { return _view; }
    const BubbleInsets &insets() const { return _insets; }
    // Of the sender: as BubbleImage's source; empty for none.
    const QString &avatar() const { return _avatar; }
    // Before the bubble is handed to a table.
    void setAvatar(const QString &image) { _avatar = image; }

private:
    QDateTime _date;
    NSBubbleType _type;
    BubbleView _view;
    BubbleInsets _insets;
    QString _avatar;
};

using NSBubblePtr = std::shared_ptr<const NSBubbleData>;

} // namespace cvtamber
