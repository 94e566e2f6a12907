// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TextImport.h"

#include "store/StoreDisk.h"
#include "text/TextCodec.h"

#include <QStringDecoder>
#include <QTextBoundaryFinder>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

struct LanguagePage
{
    QStringView language;
    StringEncoding page;
};

constexpr LanguagePage LanguagePages[] = {
    {u"pl", StringEncoding::WindowsCP1250},
    {u"cs", StringEncoding::WindowsCP1250},
    {u"el", StringEncoding::WindowsCP1253},
    {u"ar", StringEncoding::WindowsCP1256},
};

StringEncoding codePageOf(const QString &preferredLanguage)
{
    const QStringView language = QStringView(preferredLanguage).left(2);
    for (const LanguagePage &entry : LanguagePages) {
        if (entry.language == language)
            return entry.page;
    }
    return StringEncoding::WindowsCP1252;
}

bool hasTooLongWord(const QString &text)
{
    if (text.size() <= LongestWord)
        return false;
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    qsizetype last = 0;
    for (qsizetype next = breaks.toNextBoundary(); next >= 0; next = breaks.toNextBoundary()) {
        if (next - last > LongestWord)
            return true;
        last = next;
    }
    return false;
}

} // namespace

QString textOfBytes(QByteArrayView bytes, const QString &preferredLanguage)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    if (!utf8.hasError())
        return text.isNull() ? u""_s : text;
    const DecodedText decoded = TextCodec::decodeRaw(bytes, codePageOf(preferredLanguage));
    return decoded.undefined == 0 ? decoded.text : QString();
}

ImportedText readTextFile(const StoreDisk &disk, const FileURL &url, const QString &preferredLanguage)
{
    using Outcome = ImportedText::Outcome;
    if (disk.status(url).stamp.size > LargestImport)
        return {Outcome::TooLarge, {}, {}};
    const ReadResult read = disk.read(url);
    if (!read.ok())
        return {Outcome::Unreadable, {}, read.message};
    QString text = textOfBytes(read.bytes, preferredLanguage);
    if (text.isNull() || text.contains(QChar(u'\0')) || hasTooLongWord(text))
        return {Outcome::NotText, {}, {}};
    return {Outcome::Ok, std::move(text), {}};
}

} // namespace cvtamber
