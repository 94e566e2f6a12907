// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ChatVerb.h"

#include "chat/text/ChineseText.h"

namespace cvtamber {

QString ChatVerb::outgoing(const QString &line, int language) const
{
    return language == DeviceLanguage::Chinese ? toneSymbolsForPinyin(pinyinForText(line)) : line;
}

QString ChatVerb::incoming(const QString &line, int language) const
{
    return language == DeviceLanguage::Chinese ? marksForToneSymbols(line) : line;
}

} // namespace cvtamber
