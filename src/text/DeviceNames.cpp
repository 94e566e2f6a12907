// SPDX-License-Identifier: GPL-3.0-or-later
#include "text/DeviceNames.h"

#include "base/VisibleText.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

NameFault nameFault(const QString &name)
{
    if (isBlank(name))
        return NameFault::Empty;
    for (const QChar c : name) {
        if (c.category() == QChar::Other_Control || c == QChar::ReplacementCharacter)
            return NameFault::NotText;
        if (c.isSpace())
            return NameFault::Space;
        if (c == u'{' || c == u'}')
            return NameFault::Brace;
        if (c == u'/' || c == u'\\')
            return NameFault::Slash;
    }
    return NameFault::None;
}

NameFault nameFault(const QString &name, int keyboardLanguage, StringEncoding encoding)
{
    const NameFault fault = nameFault(name);
    if (fault != NameFault::None)
        return fault;
    const EncodedText encoded = TextCodec::encode(name, keyboardLanguage);
    const bool comesBack =
        encoded.replaced == 0 && TextCodec::decodeRaw(encoded.bytes, encoding).text == name;
    return comesBack ? NameFault::None : NameFault::Unlistable;
}

bool endsTranslatedStore(const QString &name)
{
    return name.compare("END"_L1, Qt::CaseInsensitive) == 0;
}

QString suggestedDeviceName(const QString &title, int keyboardLanguage, StringEncoding encoding,
                            const std::function<bool(const QString &name)> &isTaken)
{
    const auto isGood = [&](const QString &name) {
        return nameFault(name, keyboardLanguage, encoding) == NameFault::None;
    };
    QString name;
    // Parts of letters, so that one with a mark leaves its base.
    for (const QChar c : title.left(255).normalized(QString::NormalizationForm_KD)) {
        if (isGood(QString(c)))
            name += c;
    }
    if (name.isEmpty())
        name = u"FILE"_s;
    QString free = name;
    for (int number = 2; endsTranslatedStore(free) || isTaken(free); ++number)
        free = name + QString::number(number);
    return free;
}

} // namespace cvtamber
