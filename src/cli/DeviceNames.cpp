// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DeviceNames.h"

#include "base/VisibleText.h"

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;

QString fileNameProblem(const QString &name)
{
    if (name.isEmpty())
        return u"A file on the device needs a name that is not empty."_s;
    const auto refused = [&name](QLatin1StringView what) {
        return u"The device cannot keep the name %1: it holds %2."_s.arg(visibleText(name), what);
    };
    for (const QChar c : name) {
        if (c.category() == QChar::Other_Control || c == QChar::ReplacementCharacter)
            return refused("a control character or a byte that is no text"_L1);
        if (c.isSpace())
            return refused("a space"_L1);
        if (c == u'{' || c == u'}')
            return refused("a brace"_L1);
        if (c == u'/' || c == u'\\')
            return refused("a slash"_L1);
    }
    return {};
}

QString unlistableNameProblem(const QString &name, int keyboardLanguage, StringEncoding encoding)
{
    const EncodedText encoded = TextCodec::encode(name, keyboardLanguage);
    if (encoded.replaced == 0 && TextCodec::decodeRaw(encoded.bytes, encoding).text == name)
        return {};
    return u"The device cannot list the name %1 again: use letters from A to Z and digits."_s.arg(
        visibleText(name));
}

QString deviceCommandProblem(const QString &text)
{
    const auto brace = text.indexOf(u'{');
    if (brace < 0)
        return {};
    const auto line = QStringView(text).left(brace).count(u'\n') + 1;
    return u"Line %1 holds an opening brace, which the device may take for a command. "
           "Nothing was sent. --force sends it all the same."_s.arg(line);
}

QString noSuchFileSentence(const QString &name, const QList<CVFileData> &files)
{
    QString sentence = u"There is no file %1 on the device."_s.arg(visibleText(name));
    const auto similar = std::find_if(files.begin(), files.end(), [&name](const CVFileData &file) {
        return file.name().compare(name, Qt::CaseInsensitive) == 0;
    });
    if (similar != files.end())
        sentence += u" There is %1: capital and small letters differ."_s.arg(visibleText(similar->name()));
    return sentence;
}

} // namespace cvtamber
