// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ChatVerb.h"

#include "chat/text/ChineseText.h"

namespace cvtamber {

PlainText ChatVerb::outgoing(const QString &line, const Languages &languages) const
{
    const QString text =
        languages.shown == DeviceLanguage::Chinese ? toneSymbolsForPinyin(pinyinForText(line)) : line;
    return plainForDevice(text, languages.keyboard, languages.shown);
}

QString ChatVerb::incoming(const QString &line, int language) const
{
    return language == DeviceLanguage::Chinese ? marksForToneSymbols(line) : line;
}

} // namespace cvtamber
