// SPDX-License-Identifier: GPL-3.0-or-later
#include "text/TextComposition.h"

#include "text/CodePages.h"

#include <QChar>

#include <algorithm>
#include <vector>

namespace cvtamber::TextComposition {

namespace {

struct Pair
{
    quint32 parts; // base in the upper half, mark in the lower
    char16_t composed;

    friend bool operator<(const Pair &a, const Pair &b) { return a.parts < b.parts; }
};

constexpr quint32 joined(char16_t base, char16_t mark)
{
    return static_cast<quint32>(base) << 16 | mark;
}

std::vector<Pair> pairsOfAllPages()
{
    std::vector<Pair> pairs;
    for (const auto &page :
         {CodePages::Windows1250, CodePages::Windows1252, CodePages::Windows1253, CodePages::Windows1256}) {
        for (const char16_t c : page) {
            if (QChar::decompositionTag(c) != QChar::Canonical)
                continue;
            const QString parts = QChar::decomposition(c);
            if (parts.size() == 2)
                pairs.push_back({joined(parts[0].unicode(), parts[1].unicode()), c});
        }
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

} // namespace

char16_t compose(char16_t base, char16_t mark)
{
    static const std::vector<Pair> pairs = pairsOfAllPages();
    const Pair wanted{joined(base, mark), 0};
    const auto found = std::lower_bound(pairs.begin(), pairs.end(), wanted);
    return found != pairs.end() && found->parts == wanted.parts ? found->composed : u'\0';
}

bool isMark(char32_t c)
{
    const bool isLaterHangul = (c >= 0x1161 && c <= 0x1175) || (c >= 0x11A8 && c <= 0x11C2);
    const auto category = QChar::category(c);
    return isLaterHangul || category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining ||
           category == QChar::Mark_Enclosing;
}

QString canonicalParts(char32_t c)
{
    const QString whole = QString::fromUcs4(&c, 1);
    const QString parts = whole.normalized(QString::NormalizationForm_D);
    return parts == whole ? QString() : parts;
}

bool standsWithoutMarks(char16_t base)
{
    return base != 0 && QChar::category(base) != QChar::Symbol_Math;
}

} // namespace cvtamber::TextComposition
