// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/MarkedTranslation.h"

#include <QStringBuilder>

namespace cvtamber {

QByteArray MarkedTranslation::forwardOpening(int grade)
{
    return "<braille " + QByteArray::number(grade) + ">";
}

QByteArray MarkedTranslation::forwardClosing()
{
    return QByteArrayLiteral("</braille>");
}

QByteArray MarkedTranslation::forward(const QByteArray &text, int grade)
{
    return forwardOpening(grade) + text + forwardClosing();
}

QByteArray MarkedTranslation::backward(const QByteArray &stored, int grade)
{
    const qsizetype openingEnd = stored.indexOf('>');
    if (stored.startsWith("<braille ") && stored.endsWith(forwardClosing()) && openingEnd > 0)
        return stored.mid(openingEnd + 1, stored.size() - openingEnd - 1 - forwardClosing().size());
    return "<print " + QByteArray::number(grade) + ">" + stored + "</print>";
}

} // namespace cvtamber
