// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chat/BubbleTable/BubbleFigures.h"
#include "chat/BubbleTable/NSBubbleData.h"
#include "chat/BubbleTable/TextMeasurer.h"
#include "chat/BubbleTable/UIBubbleTableViewDataSource.h"
#include "ui/TableViewController.h"

#include <QAbstractItemModel>

#include <chrono>
#include <optional>
#include <vector>

namespace cvtamber {

class BubbleModel;

// A conversation as speech bubbles under the dates of their sections.
//
// A table section is a section of bubbles: row 0 its header, then its bubbles; the typing indicator is the one row of an
// extra last section. reloadData asks the data source; a conversation that only grew is told to the view in row
// insertions (and removals of headers whose section was joined with another), anything else in a reset. The
// properties take effect in the next reloadData.
// A bubble is measured when its row is first asked for, and again when the font or the room for it has changed.
// Thread: main thread. Owner: the screen that shows it.
class UIBubbleTableView : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel *model READ modelPointer CONSTANT)
    // In pixels, of the texts in bubbles and of the dates.
    Q_PROPERTY(int fontSize READ fontSize NOTIFY appearanceChanged)
    Q_PROPERTY(int headerFontSize READ headerFontSize NOTIFY appearanceChanged)
    // Bubbles, as the last reloadData found them.
    Q_PROPERTY(int messageCount READ messageCount NOTIFY messageCountChanged)

public:
    enum class Style { Plain, Grouped };
    enum class ScrollPosition { Top, Bottom };

    // Stops the application unless the style is plain.
    explicit UIBubbleTableView(Style style = Style::Plain);
    ~UIBubbleTableView() override;

    std::shared_ptr<UIBubbleTableViewDataSource> bubbleDataSource() const { return _source.lock(); }
    void setBubbleDataSource(const std::weak_ptr<UIBubbleTableViewDataSource> &source) { _source = source; }
    // The longest gap between neighbours of a section.
    std::chrono::milliseconds snapInterval() const { return _snapInterval; }
    void setSnapInterval(std::chrono::milliseconds interval) { _snapInterval = interval; }
    NSBubbleTypingType typingBubble() const { return _typingBubble; }
    void setTypingBubble(NSBubbleTypingType typing) { _typingBubble = typing; }
    bool showAvatars() const { return _showAvatars; }
    void setShowAvatars(bool shows) { _showAvatars = shows; }
    // The sections that the last reloadData made; made anew at each call.
    std::vector<std::vector<NSBubblePtr>> bubbleSection() const;

    // Stops the application when the data source hands over no bubble.
    void reloadData();
    // The conversation has only grown: what reloadData does, at the cost of the new bubbles alone. The properties are
    // those of the last reloadData.
    void takeNewBubbles();
    // As the last reloadData made them.
    int numberOfSections() const;
    int numberOfRows(int section) const;
    // In units of the screen; 0 outside.
    double heightForRow(IndexPath path) const;
    // Nothing for a row outside the table.
    void scrollToRow(IndexPath path, ScrollPosition position, bool animated);
    // The last row that the view shows any of; none while it shows no row.
    std::optional<IndexPath> lastVisibleRow() const;

    int fontSize() const;
    int headerFontSize() const;
    int messageCount() const;
    BubbleModel &model() const { return *_model; }
    QAbstractItemModel *modelPointer() const;

    // What the view says. Without a measurer texts have no size.
    void setTextMeasurer(const std::shared_ptr<const TextMeasurer> &measurer);
    void setAppearance(const BubbleAppearance &appearance);
    // An index of the model; -1 for none.
    Q_INVOKABLE void setLastVisibleIndex(int index) { _lastVisibleIndex = index; }
    // Of a bubble, as it was given; empty for other rows.
    Q_INVOKABLE QString textAt(int index) const;
    // Which bubble of all, from 1; 0 for other rows.
    Q_INVOKABLE int positionOf(int index) const;
    // The next bubble row from an index, this one included, downwards or upwards; -1 where there is none.
    Q_INVOKABLE int bubbleIndexFrom(int index, bool downwards) const;
    // The bubble row so far from an index that both fit into the height, at least the next one; the last one or first
    // one at the ends; -1 without bubbles.
    Q_INVOKABLE int bubbleIndexAfterPage(int index, bool downwards, double height) const;

signals:
    void appearanceChanged();
    void messageCountChanged();
    // An index of the model.
    void scrollRequested(int index, bool atBottom, bool animated);

private:
    void take(bool onlyNew);
    // In the model; -1 outside.
    int indexOf(IndexPath path) const;

    std::weak_ptr<UIBubbleTableViewDataSource> _source;
    std::chrono::milliseconds _snapInterval = std::chrono::seconds(120);
    NSBubbleTypingType _typingBubble = NSBubbleTypingType::None;
    bool _showAvatars = false;
    int _lastVisibleIndex = -1;
    std::unique_ptr<BubbleModel> _model;
};

} // namespace cvtamber
