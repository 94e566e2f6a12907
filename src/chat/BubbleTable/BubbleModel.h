// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/BubbleFigures.h"
#include "chat/BubbleTable/NSBubbleData.h"
#include "chat/BubbleTable/TextMeasurer.h"
#include "chat/BubbleTable/UIBubbleTableViewCell.h"
#include "chat/text/BubbleSections.h"

#include <QAbstractListModel>

#include <functional>
#include <vector>

namespace cvtamber {

// The rows of a bubble table one after the other, for a list view: headers, bubbles, and the typing indicator.
//
// A text is measured when its row is first asked for; its size is kept until the font or the room changes.
// Owner: its table. Thread: main thread.
class BubbleModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Kind { Header, Bubble, Typing };
    Q_ENUM(Kind)
    // The views' names stand behind; frames are from the row's top left.
    enum Role {
        KindRole = Qt::UserRole + 1, // kind
        TitleRole,       // title: of a header; the text that a bubble shows, also the display role
        SpokenRole,      // spoken: what a screen reader says
        MineRole,        // mine: the type of a bubble and of the typing indicator
        HeightRole,      // rowHeight
        BubbleRole,      // bubbleFrame: of the background; of the typing indicator
        ViewRole,        // viewFrame: of the text or picture
        ImageRole,       // bubbleImage: the background's; the typing indicator's
        LeftCapRole,     // leftCap
        TopCapRole,      // topCap
        PictureRole,     // picture: its source; empty for a text
        AvatarRole,      // avatarImage; empty for none
        AvatarFrameRole, // avatarFrame
    };
    Q_ENUM(Role)

    BubbleModel();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // Asks for all `count` bubbles, and groups those beyond the ones that are already known.
    void reload(int count, const std::function<NSBubblePtr(int)> &bubbleAt,
                std::chrono::milliseconds snapInterval);
    // Asks for those beyond the known ones alone.
    void append(int count, const std::function<NSBubblePtr(int)> &bubbleAt);
    void setTyping(NSBubbleTypingType typing);
    void setShowAvatars(bool shows);
    void setMeasurer(const std::shared_ptr<const TextMeasurer> &measurer);
    // Whether anything has changed.
    bool setAppearance(const BubbleAppearance &appearance);

    const BubbleSections &sections() const { return _sections; }
    bool hasTypingRow() const { return _typing != NSBubbleTypingType::None; }
    BubbleFigures figures() const { return BubbleFigures(_appearance); }
    const NSBubblePtr &bubble(int number) const { return _bubbles[static_cast<size_t>(number)]; }
    Kind kindOf(int row) const;
    // Of a bubble's row; null for others.
    NSBubblePtr bubbleAt(int row) const;
    double heightOf(int row) const;

private:
    struct Measured
    {
        QSizeF size;
        int shown = 0;
        // Of the appearance that it was measured in; 0: not measured.
        unsigned generation = 0;
    };

    int code(int row) const { return _rows[static_cast<size_t>(row)]; }
    void grow(std::vector<NSBubblePtr> more);
    void merge(const std::vector<int> &now);
    void addRows(size_t at, std::vector<int>::const_iterator begin, std::vector<int>::const_iterator end);
    void removeRow(size_t at);
    void replace(std::vector<NSBubblePtr> bubbles);
    void figuresChanged();
    const Measured &measured(int number) const;
    QVariant dateData(const NSBubbleData &first, int role) const;
    QVariant typingData(int role) const;
    QVariant bubbleData(int number, int role) const;
    QVariant frameData(int number, int role) const;
    QString shownText(int number) const;
    static QString spokenText(const NSBubbleData &bubble);

    std::chrono::milliseconds _snapInterval{0};
    std::vector<NSBubblePtr> _bubbles;
    BubbleSections _sections{std::chrono::milliseconds(0)};
    // What is shown: BubbleSections' rows, and the typing indicator.
    std::vector<int> _rows;
    NSBubbleTypingType _typing = NSBubbleTypingType::None;
    bool _showAvatars = false;
    BubbleAppearance _appearance;
    std::shared_ptr<const TextMeasurer> _measurer;
    unsigned _generation = 1;
    mutable std::vector<Measured> _measured; // by number
};

} // namespace cvtamber
