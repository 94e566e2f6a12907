// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include <functional>
#include <vector>

namespace cvtamber {

// Shows a text of any form in a document at a cost that does not grow with the text: the document's blocks are neither
// many nor long.
//
// Qt lays out a block as a whole and looks at all blocks for each picture. So lines beyond the first thousand share blocks (a
// line end is a line separator there), and a line that is longer than a block goes on in the next one. Such a break is a unit of
// the document that the text has not: documentPosition and textPosition count it.
// Thread: main thread. Owner: the editor; the document may go before it.
class PageDocument
{
public:
    // Units of a block; one that grew by edits in its middle may have twice as many.
    static constexpr qsizetype LongestBlock = 2500;

    void setDocument(QTextDocument *document);
    QTextDocument *document() const { return _document; }

    // Line ends of the text are "\n".
    void insert(qsizetype position, QStringView text, const QTextCharFormat &format);
    // Tells how many line ends were removed.
    qsizetype remove(qsizetype position, qsizetype length);
    void clear();

    // Behind a break that stands at the position.
    int documentPosition(qsizetype position) const;
    qsizetype textPosition(int position) const;
    QTextCursor cursorFor(qsizetype start, qsizetype end) const;
    // Whether the document has as many units as a text, and between two of its positions the unit that `unitAt` gives for
    // each place of the text.
    bool shows(qsizetype length, int from, int to, const std::function<QChar(qsizetype)> &unitAt) const;
    // Whether a break stands behind the position.
    bool isBreak(int position) const;
    static bool isLineEnd(QChar unit);
    // A unit as a document can hold it and a reader can be given it: as itself, or as a sign for it.
    static QChar sign(QChar unit);

private:
    size_t breaksUpTo(qsizetype position) const;
    // How many breaks stand before a position of the document.
    size_t breaksBefore(int position) const;
    void dropStrayBreak(qsizetype position);
    void divide(const QTextBlock &block);

    QPointer<QTextDocument> _document;
    // Positions of the text, in order.
    std::vector<qsizetype> _breaks;
};

} // namespace cvtamber
