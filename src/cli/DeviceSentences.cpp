// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DeviceSentences.h"

#include "base/VisibleText.h"
#include "text/DeviceNames.h"

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;

QString fileNameProblem(const QString &name)
{
    const auto refused = [&name](QLatin1StringView what) {
        return u"The device cannot keep the name %1: it holds %2."_s.arg(visibleText(name), what);
    };
    switch (nameFault(name)) {
    case NameFault::Empty:
        return u"A file on the device needs a name that is not empty."_s;
    case NameFault::NotText:
        return refused("a control character or a byte that is no text"_L1);
    case NameFault::Space:
        return refused("a space"_L1);
    case NameFault::Brace:
        return refused("a brace"_L1);
    case NameFault::Slash:
        return refused("a slash"_L1);
    case NameFault::None:
    case NameFault::Unlistable:
        break;
    }
    return {};
}

QString unlistableNameProblem(const QString &name, int keyboardLanguage, StringEncoding encoding)
{
    if (nameFault(name, keyboardLanguage, encoding) != NameFault::Unlistable)
        return fileNameProblem(name);
    return u"The device cannot list the name %1 again: use letters from A to Z and digits."_s.arg(
        visibleText(name));
}

QString deviceCommandProblem(const QString &text)
{
    const auto line = lineOfFirst(text, u"{");
    if (!line)
        return {};
    return u"Line %1 holds an opening brace, which the device may take for a command. "
           "Nothing was sent. --force sends it all the same."_s.arg(*line);
}

QString lostCharactersSentence(const PlainText &plain)
{
    if (plain.lost == 0)
        return {};
    const QString characters = plain.lost == 1 ? u"1 character"_s : u"%1 characters"_s.arg(plain.lost);
    return u"%1 that the device does not have became \"?\" or lost an accent: %2."_s.arg(
        characters, plain.examples.join(", "_L1));
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
