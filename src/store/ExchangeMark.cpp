// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/ExchangeMark.h"

#include "base/HiddenFile.h"

#include <QStringList>

namespace cvtamber {

namespace {

constexpr int Base = 36;
// The random part, and the three numbers.
constexpr qsizetype Parts = 4;

} // namespace

QString ExchangeMark::toText() const
{
    return u'-' % QString::number(madeInode, Base) % u'-' % QString::number(knownInode, Base) % u'-' %
           QString::number(knownSize, Base);
}

std::optional<ExchangeMark> ExchangeMark::ofName(QStringView hiddenName)
{
    if (!hiddenName.startsWith(HiddenNamePrefix))
        return {};
    const auto parts = hiddenName.sliced(HiddenNamePrefix.size()).toString().split(u'-');
    if (parts.size() != Parts)
        return {};
    bool areNumbers[] = {false, false, false};
    const ExchangeMark mark{parts[1].toULongLong(&areNumbers[0], Base),
                            parts[2].toULongLong(&areNumbers[1], Base),
                            parts[3].toLongLong(&areNumbers[2], Base)};
    return areNumbers[0] && areNumbers[1] && areNumbers[2] ? std::optional(mark) : std::nullopt;
}

} // namespace cvtamber
