// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/PageDocument.h"

#include <QTextBlock>

#include <algorithm>
#include <cstddef>

namespace cvtamber {
namespace {

// A block ends with the first line after this many units or so many lines (each costs Qt a look at all others of the
// block), or with the first word of a long line.
constexpr qsizetype enoughForLines = 1000;
constexpr int mostLines = 100;
constexpr qsizetype enoughForWords = 2000;
constexpr char16_t joiner = 0x200D;

bool isLineEnd(QChar unit)
{
    return unit == u'\n' || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator;
}

bool isInsideCharacter(QStringView text, qsizetype at)
{
    return text[at].isMark() || text[at] == joiner || (at > 0 && text[at - 1] == joiner);
}

// Where blocks end in a text that is read unit by unit.
class BlockEnds
{
public:
    enum End { None, AtLineEnd, Before };

    explicit BlockEnds(qsizetype length)
        : _length(length)
    {}
    End take(QStringView text, qsizetype at)
    {
        const End end = endAt(text, at);
        _length = end == None ? _length + 1 : end == Before ? 1 : 0;
        _lines = end == None ? _lines + (isLineEnd(text[at]) ? 1 : 0) : 0;
        return end;
    }

private:
    End endAt(QStringView text, qsizetype at) const
    {
        if (isLineEnd(text[at]))
            return _length >= enoughForLines || _lines >= mostLines ? AtLineEnd : None;
        if (_length < enoughForWords || text[at].isLowSurrogate())
            return None;
        const bool isWord = at > 0 && text[at - 1] == u' ' && text[at] != u' ';
        const bool isFull = _length >= PageDocument::LongestBlock && !isInsideCharacter(text, at);
        return isWord || isFull || _length >= 2 * PageDocument::LongestBlock ? Before : None;
    }

    qsizetype _length;
    int _lines = 0;
};

} // namespace

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

bool PageDocument::shows(QStringView text, int from, int to, QChar (*held)(QChar)) const
{
    if (_document->characterCount() - 1 != text.size() + static_cast<qsizetype>(_breaks.size()))
        return false;
    for (int at = from; at < std::min(to, _document->characterCount() - 1); ++at) {
        const QChar unit = _document->characterAt(at);
        const QChar wanted = isBreak(at) ? QChar(u'\n') : held(text[textPosition(at)]);
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
    BlockEnds ends(cursor.positionInBlock());
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

void PageDocument::remove(qsizetype position, qsizetype length)
{
    if (length == 0)
        return;
    cursorFor(position, position + length).removeSelectedText();
    const auto first = _breaks.begin() + static_cast<std::ptrdiff_t>(breaksUpTo(position));
    const auto last = _breaks.begin() + static_cast<std::ptrdiff_t>(breaksUpTo(position + length));
    std::for_each(last, _breaks.end(), [&](qsizetype &place) { place -= length; });
    _breaks.erase(first, last);
    dropStrayBreak(position);
    divide(cursorFor(position, position).block());
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
    BlockEnds ends(0);
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (const BlockEnds::End end = ends.take(text, at); end != BlockEnds::None)
            found.emplace_back(at, end);
    }
    const int start = block.position();
    QTextCursor cursor(_document);
    for (auto place = found.rbegin(); place != found.rend(); ++place) {
        const int position = start + static_cast<int>(place->first);
        cursor.setPosition(position);
        if (place->second == BlockEnds::AtLineEnd) {
            cursor.deleteChar();
        } else {
            const qsizetype inText = textPosition(position);
            _breaks.insert(_breaks.begin() + static_cast<std::ptrdiff_t>(breaksUpTo(inText)), inText);
        }
        cursor.insertBlock();
    }
}

} // namespace cvtamber
