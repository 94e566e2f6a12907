// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreNames.h"

#include "base/NameBytes.h"
#include "base/VisibleText.h"

#include <QStringDecoder>
#include <QUuid>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace cvtamber {

namespace {

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F') || (c >= u'a' && c <= u'f');
}

bool isUuid(const QString &name)
{
    if (name.size() != 36)
        return false;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isBetweenGroups = i == 8 || i == 13 || i == 18 || i == 23;
        if (isBetweenGroups ? name[i] != u'-' : !isHexDigit(name[i]))
            return false;
    }
    return true;
}

#ifdef Q_OS_WIN
constexpr bool OnWindows = true;
#else
constexpr bool OnWindows = false;
#endif

// After so many taken titles a number is no help any more.
constexpr int MostNumbered = 100'000;
constexpr QStringView WindowsForbidden = u"<>:\"|?*";
constexpr std::array<QStringView, 4> WindowsDevices{u"con", u"prn", u"aux", u"nul"};
constexpr std::array<QStringView, 2> WindowsPorts{u"com", u"lpt"};

bool isControl(QChar unit)
{
    return unit.category() == QChar::Other_Control;
}

// A backslash too: the same store may be synced to a system where it divides folders.
bool isRefused(QChar unit)
{
    return unit == u'/' || unit == u'\\' || isControl(unit) || (OnWindows && WindowsForbidden.contains(unit));
}

// The character whose bytes begin at that place as odd bytes; empty when they are none. Such a row could be
// written, but it would be read back as that character.
QString characterOfOddBytes(QStringView text, qsizetype at)
{
    QByteArray bytes;
    for (qsizetype i = at; i < text.size() && i < at + 4 && isOddByte(text[i]); ++i) {
        bytes.append(static_cast<char>(text[i].unicode() & 0xFF));
        QStringDecoder decoder(QStringDecoder::Utf8,
                               QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
        QString character = decoder.decode(bytes);
        if (!decoder.hasError())
            return character;
    }
    return {};
}

// Only whole characters and single odd bytes: what a file name gives back as it is.
QString writable(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), [](QChar unit) { return unit.isSurrogate(); }))
        return text;
    QString result;
    result.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        if (unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
            result += unit;
            result += text[++at];
            continue;
        }
        const QString character = characterOfOddBytes(text, at);
        if (!character.isEmpty()) {
            result += character;
            at += nameBytes(character) - 1;
            continue;
        }
        result += !unit.isSurrogate() || isOddByte(unit) ? unit : QChar(QChar::ReplacementCharacter);
    }
    return result;
}

// Windows takes "con", "con.txt" and the like for devices, in any folder.
bool isWindowsDevice(QStringView name)
{
    const auto is = [name](QStringView other) { return name.compare(other, Qt::CaseInsensitive) == 0; };
    const bool isPort = name.size() == 4 && name[3] >= u'1' && name[3] <= u'9' &&
                        std::any_of(WindowsPorts.begin(), WindowsPorts.end(), [name](QStringView port) {
                            return name.startsWith(port, Qt::CaseInsensitive);
                        });
    return isPort || std::any_of(WindowsDevices.begin(), WindowsDevices.end(), is);
}

QString withoutDevice(const QString &title)
{
    const qsizetype dot = title.indexOf(u'.');
    const QString name = dot < 0 ? title : title.first(dot);
    return isWindowsDevice(name) ? QString(name % u'-' % title.sliced(name.size())) : title;
}

qsizetype mostTitleBytes()
{
    return MaxNameBytes - 1 - DocumentExtension.size();
}

QString cutTitle(const QString &title, const QString &end)
{
    return cutToBytes(title, mostTitleBytes() - nameBytes(end)) % end;
}

bool isHighOf(QStringView text, qsizetype at)
{
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

} // namespace

bool isStoreName(const QString &name)
{
    return name == UserRecordName || name == FolderRecordName || name == ActiveUsersName ||
           name == ArchivedUsersName || isUuid(name);
}

QString repairedTitle(const QString &title)
{
    QString repaired = writable(title).normalized(QString::NormalizationForm_C);
    std::replace_if(repaired.begin(), repaired.end(), isRefused, QChar(u'-'));
    qsizetype dots = 0;
    while (dots < repaired.size() && repaired[dots] == u'.')
        ++dots;
    repaired.remove(0, dots);
    repaired = cutToBytes(repaired, mostTitleBytes());
    if (isBlank(repaired))
        return u"Untitled"_s;
    return OnWindows ? cutToBytes(withoutDevice(repaired), mostTitleBytes()) : repaired;
}

QString nextFreeTitle(const QString &title, const std::function<bool(const QString &title)> &isTaken)
{
    const QString repaired = repairedTitle(title);
    QString free = repaired;
    for (int number = 2; number <= MostNumbered; ++number) {
        if (!isTaken(free))
            return free;
        free = cutTitle(repaired, u" %1"_s.arg(number));
    }
    return cutTitle(repaired, u' ' % freshUuidName());
}

QString documentFileName(const QString &title)
{
    return repairedTitle(title) % u'.' % DocumentExtension;
}

QString comparableName(const QString &name)
{
    return name.normalized(QString::NormalizationForm_D)
        .toCaseFolded()
        .normalized(QString::NormalizationForm_C);
}

QString singleLine(const QString &text)
{
    const auto breaksLine = [](QChar unit) {
        return isControl(unit) || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator;
    };
    QString line = text;
    if (std::any_of(text.begin(), text.end(), breaksLine))
        std::replace_if(line.begin(), line.end(), breaksLine, QChar(u' '));
    return line;
}

QString freshUuidName()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

bool isLike(QStringView text, QStringView pattern)
{
    qsizetype at = 0;
    qsizetype in = 0;
    // Where the last run began, and the pattern after it: only that run may still grow.
    qsizetype runEnd = -1;
    qsizetype afterRun = 0;
    while (at < text.size()) {
        if (in < pattern.size() && pattern[in] == u'*') {
            afterRun = ++in;
            runEnd = at;
        } else if (in < pattern.size() && pattern[in] == u'?') {
            at += isHighOf(text, at) ? 2 : 1;
            ++in;
        } else if (in < pattern.size() && pattern[in] == text[at]) {
            ++at;
            ++in;
        } else if (runEnd >= 0) {
            runEnd += isHighOf(text, runEnd) ? 2 : 1;
            at = runEnd;
            in = afterRun;
        } else {
            return false;
        }
    }
    while (in < pattern.size() && pattern[in] == u'*')
        ++in;
    return in == pattern.size();
}

} // namespace cvtamber
