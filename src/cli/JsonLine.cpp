// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonLine.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

bool needsEscape(QChar c)
{
    switch (c.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

} // namespace

QByteArray jsonLine(const QJsonDocument &document)
{
    const QString plain = QString::fromUtf8(document.toJson(QJsonDocument::Compact));
    QString escaped;
    escaped.reserve(plain.size() + 1);
    for (const QChar c : plain) {
        if (needsEscape(c))
            escaped += u"\\u%1"_s.arg(static_cast<uint>(c.unicode()), 4, 16, QChar(u'0'));
        else
            escaped += c;
    }
    escaped += u'\n';
    return escaped.toUtf8();
}

} // namespace cvtamber
