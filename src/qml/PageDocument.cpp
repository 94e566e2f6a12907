// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/PageDocument.h"

#include <QTextBlock>

#include <algorithm>
#include <cstddef>

namespace cvtamber {
namespace {

// A line is a block of its own until there are so many; a right-to-left line stands right by itself then.
constexpr int mostOwnBlocks = 1000;
// After that a block ends with the first line after this many units or so many lines (each costs Qt a look at all others of
// the block). It always ends with the first word of a long line.
constexpr qsizetype enoughForLines = 1000;
constexpr int mostLines = 100;
constexpr qsizetype enoughForWords = 2000;
constexpr char16_t joiner = 0x200D;

bool isInsideCharacter(QStringView text, qsizetype at)
{
    return text[at].isMark() || text[at] == joiner || (at > 0 && text[at - 1] == joiner);
}

// Where blocks end in a text that is read unit by unit.
class BlockEnds
{
public:
    enum End { None, AtLineEnd, Before };

    // In a document of so many blocks, behind the text that the first block has already.
    BlockEnds(int blocks, QStringView text)
        : _blocks(blocks)
        , _length(text.size())
        , _lines(static_cast<int>(std::count_if(text.begin(), text.end(), PageDocument::isLineEnd)))
    {}
    End take(QStringView text, qsizetype at)
    {
        const End end = endAt(text, at);
        _length = end == None ? _length + 1 : end == Before ? 1 : 0;
        _lines = end == None ? _lines + (PageDocument::isLineEnd(text[at]) ? 1 : 0) : 0;
        _blocks += end == None ? 0 : 1;
        return end;
    }

private:
    End endAt(QStringView text, qsizetype at) const
    {
        if (PageDocument::isLineEnd(text[at])) {
            const bool isOwn = _blocks < mostOwnBlocks;
            return isOwn || _length >= enoughForLines || _lines >= mostLines ? AtLineEnd : None;
        }
        if (_length < enoughForWords || text[at].isLowSurrogate())
            return None;
        const bool isWord = at > 0 && text[at - 1] == u' ' && text[at] != u' ';
        const bool isFull = _length >= PageDocument::LongestBlock && !isInsideCharacter(text, at);
        return isWord || isFull || _length >= 2 * PageDocument::LongestBlock ? Before : None;
    }

    int _blocks;
    qsizetype _length;
    int _lines;
};

} // namespace

bool PageDocument::isLineEnd(QChar unit)
{
    return unit == u'\n' || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator;
}

QChar PageDocument::sign(QChar unit)
{
    const char16_t code = unit.unicode();
    constexpr char16_t controlPictures = 0x2400;
    if (code == u'\n' || code == u'\t')
        return unit;
    if (code < 0x20)
        return {static_cast<char16_t>(controlPictures + code)};
    if (code == 0x7F)
        return {u'\u2421'};
    if (code == QChar::ParagraphSeparator)
        return {u'\n'};
    const bool isDocumentsOwn = code == 0xFDD0 || code == 0xFDD1 || code == QChar::ObjectReplacementCharacter;
    return isDocumentsOwn ? QChar(QChar::ReplacementCharacter) : unit;
}

void PageDocument::setDocument(QTextDocument *document)
{
    _document = document;
    _breaks.clear();
}

// Positions

size_t PageDocument::breaksUpTo(qsizetype position) const
{
    return static_cast<size_t>(std::upper_bound(_breaks.begin(), _breaks.end(), position) - _breaks.begin());
}

size_t PageDocument::breaksBefore(int position) const
{
    const auto end = std::partition_point(_breaks.begin(), _breaks.end(), [&](const qsizetype &place) {
        return place + (&place - _breaks.data()) < position;
    });
    return static_cast<size_t>(end - _breaks.begin());
}

bool PageDocument::isBreak(int position) const
{
    const size_t number = breaksBefore(position);
    return number < _breaks.size() && _breaks[number] + static_cast<qsizetype>(number) == position;
}

int PageDocument::documentPosition(qsizetype position) const
{
    return static_cast<int>(position + static_cast<qsizetype>(breaksUpTo(position)));
}

qsizetype PageDocument::textPosition(int position) const
{
    return position - static_cast<qsizetype>(breaksBefore(position));
}

QTextCursor PageDocument::cursorFor(qsizetype start, qsizetype end) const
{
    QTextCursor cursor(_document);
    cursor.setPosition(documentPosition(start));
    cursor.setPosition(documentPosition(end), QTextCursor::KeepAnchor);
    return cursor;
}

bool PageDocument::shows(qsizetype length, int from, int to,
                         const std::function<QChar(qsizetype)> &unitAt) const
{
    const int end = _document->characterCount() - 1;
    if (end != length + static_cast<qsizetype>(_breaks.size()))
        return false;
    for (int at = from; at < std::min(to, end); ++at) {
        const QChar unit = _document->characterAt(at);
        const QChar wanted = isBreak(at) ? QChar(u'\n') : unitAt(textPosition(at));
        if (isLineEnd(wanted) ? !isLineEnd(unit) : unit != wanted)
            return false;
    }
    return true;
}

// Changes

void PageDocument::clear()
{
    QTextCursor cursor(_document);
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    _breaks.clear();
}

void PageDocument::insert(qsizetype position, QStringView text, const QTextCharFormat &format)
{
    if (text.isEmpty())
        return;
    QTextCursor cursor = cursorFor(position, position);
    const auto following = _breaks.begin() + static_cast<std::ptrdiff_t>(breaksUpTo(position));
    std::for_each(following, _breaks.end(), [&](qsizetype &place) { place += text.size(); });
    QString blocks;
    blocks.reserve(text.size());
    std::vector<qsizetype> breaks;
    const QString blockText = cursor.block().text();
    BlockEnds ends(_document->blockCount(), QStringView(blockText).first(cursor.positionInBlock()));
    for (qsizetype at = 0; at < text.size(); ++at) {
        const BlockEnds::End end = ends.take(text, at);
        if (end == BlockEnds::Before) {
            breaks.push_back(position + at);
            blocks += QChar(QChar::ParagraphSeparator);
        }
        const QChar lineEnd = end == BlockEnds::AtLineEnd ? QChar::ParagraphSeparator : QChar::LineSeparator;
        blocks += text[at] == u'\n' ? lineEnd : text[at];
    }
    _breaks.insert(following, breaks.begin(), breaks.end());
    cursor.insertText(blocks, format);
    dropStrayBreak(position);
    divide(cursor.block());
}

qsizetype PageDocument::remove(qsizetype position, qsizetype length)
{
    if (length == 0)
        return 0;
    QTextCursor removed = cursorFor(position, position + length);
    const QString text = removed.selectedText();
    removed.removeSelectedText();
    const auto first = _breaks.begin() + static_cast<std::ptrdiff_t>(breaksUpTo(position));
    const auto last = _breaks.begin() + static_cast<std::ptrdiff_t>(breaksUpTo(position + length));
    std::for_each(last, _breaks.end(), [&](qsizetype &place) { place -= length; });
    const auto lines = std::count_if(text.begin(), text.end(), isLineEnd) - (last - first);
    _breaks.erase(first, last);
    dropStrayBreak(position);
    divide(cursorFor(position, position).block());
    return lines;
}

// A break before a line end, or at the end of the text, would show a line that the text has not.
void PageDocument::dropStrayBreak(qsizetype position)
{
    const size_t number = breaksUpTo(position);
    if (number == 0 || _breaks[number - 1] != position)
        return;
    QTextCursor cursor = cursorFor(position, position);
    if (!cursor.atBlockEnd() && !isLineEnd(_document->characterAt(cursor.position())))
        return;
    cursor.deletePreviousChar();
    _breaks.erase(_breaks.begin() + static_cast<std::ptrdiff_t>(number) - 1);
}

// From the last end to the first: what stands before an end keeps its place.
void PageDocument::divide(const QTextBlock &block)
{
    if (block.length() <= 2 * LongestBlock)
        return;
    const QString text = block.text();
    std::vector<std::pair<qsizetype, BlockEnds::End>> found;
    BlockEnds ends(_document->blockCount(), {});
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (const BlockEnds::End end = ends.take(text, at); end != BlockEnds::None)
            found.emplace_back(at, end);
    }
    const int start = block.position();
    QTextCursor cursor(_document);
    std::reverse(found.begin(), found.end());
    for (const auto &place : found) {
        const int position = start + static_cast<int>(place.first);
        cursor.setPosition(position);
        if (place.second == BlockEnds::AtLineEnd) {
            cursor.deleteChar();
        } else {
            const qsizetype inText = textPosition(position);
            _breaks.insert(_breaks.begin() + static_cast<std::ptrdiff_t>(breaksUpTo(inText)), inText);
        }
        cursor.insertBlock();
    }
}

} // namespace cvtamber
