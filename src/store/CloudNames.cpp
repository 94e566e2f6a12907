// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CloudNames.h"

#include "base/HiddenFile.h"
#include "base/NameBytes.h"
#include "store/StoreNames.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace cvtamber {

namespace {

constexpr QStringView ICloudEnd = u".icloud";
constexpr std::array<QStringView, 2> VisibleEnds{u".nextcloud", u".owncloud"};

// What sync programs and desktops keep beside a person's files. The letter case does not matter.
constexpr std::array<QStringView, 18> RecordNames{
    u".csync_journal.db",  u".directory",
    u".ds_store",          u".dropbox",
    u".dropbox.attr",      u".dropbox.cache",
    u".dropbox.device",    u".localized",
    u".nextcloudsync.log", u".owncloudsync.log",
    u".stfolder",          u".stignore",
    u".stversions",        u".sync",
    u".sync-exclude.lst",  u".tmp.drivedownload",
    u".tmp.driveupload",   u".trash",
};
constexpr std::array<QStringView, 4> VisibleRecordNames{u"desktop.ini", u"thumbs.db", u"ehthumbs.db",
                                                        u"icon\r"};

// Names that begin with a dot: no title does.
constexpr std::array<QStringView, 9> HiddenStarts{
    u"._",           u".#",         u".~",    u".syncthing.", u".goutputstream-",
    u".fuse_hidden", u".stfolder.", u".nfs0", u".syncignore",
};

constexpr std::array<QStringView, 14> UnfinishedEnds{
    u".tmp", u".part", u".partial", u".crdownload", u".filepart", u".download", u".drivedownload",
    u"~",    u".swp",  u".swx",     u".kate-swp",   u".!sync",    u".!ut",      u".odtmp",
};

template<typename Names> bool isOneOf(const Names &names, QStringView name)
{
    return std::any_of(names.begin(), names.end(),
                       [&](QStringView one) { return one.compare(name, Qt::CaseInsensitive) == 0; });
}

template<typename Starts> bool startsWithOneOf(const Starts &starts, QStringView name)
{
    return std::any_of(starts.begin(), starts.end(),
                       [&](QStringView start) { return name.startsWith(start); });
}

template<typename Ends> bool endsWithOneOf(const Ends &ends, QStringView name)
{
    return std::any_of(ends.begin(), ends.end(),
                       [&](QStringView end) { return name.endsWith(end, Qt::CaseInsensitive); });
}

bool isHexadecimal(QStringView text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar unit) {
        return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f') ||
               (unit >= u'A' && unit <= u'F');
    });
}

// ".Letter.tamber.~1a2b3c4d": on its way down.
bool isPartOfDownload(QStringView hidden)
{
    const qsizetype mark = hidden.lastIndexOf(u".~");
    return mark > 1 && isHexadecimal(hidden.sliced(mark + 2));
}

// ".sync_1a2b3c4d5e6f.db" and what the database keeps beside it.
bool isSyncDatabase(QStringView hidden)
{
    if (!hidden.startsWith(u".sync_"))
        return false;
    const qsizetype end = hidden.indexOf(u".db");
    return end > 0 && isHexadecimal(hidden.sliced(6, end - 6)) &&
           (hidden.size() == end + 3 || hidden[end + 3] == u'-');
}

bool isHiddenTemporary(QStringView hidden)
{
    return isHiddenName(hidden) || isOneOf(RecordNames, hidden) || startsWithOneOf(HiddenStarts, hidden) ||
           endsWithOneOf(UnfinishedEnds, hidden) || isPartOfDownload(hidden) || isSyncDatabase(hidden);
}

// A file of this store, whatever its title looks like.
bool isOurFile(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return (dot > 0 && name.sliced(dot + 1) == DocumentExtension) || name == UserRecordName ||
           name == FolderRecordName;
}

struct NameParts
{
    QString stem;
    // With its dot; empty without one.
    QString extension;
};

NameParts partsOf(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot <= 0)
        return {name, {}};
    return {name.first(dot), name.sliced(dot)};
}

// At the end of the name without its extension. Every one but our own carries a date.
const QRegularExpression &conflictMark()
{
    static const QRegularExpression mark(
        u"(?: \\((?:[^/]+['\u2019]s? )?[Cc]onflicted [Cc]opy(?:"
        u"(?: \\d{1,9})?"                                                         // ours
        u"|(?: [^/]+)? \\d{4}-\\d\\d-\\d\\d(?: \\d{6})?(?: ?\\(\\d{1,9}\\))?)\\)" // Dropbox, Nextcloud
        u"|_conflict-(?:[^/]+-)?\\d{8}-\\d{6}"                                    // ownCloud
        u"|\\.sync-conflict-\\d{8}-\\d{6}(?:-[A-Z2-7]{7})?"                       // Syncthing
        u"| \\(SFConflict [^/]+ \\d{4}(?:-\\d\\d){5}\\)"                          // Seafile
        u")\\z"_s,
        QRegularExpression::DontCaptureOption);
    return mark;
}

// Where the mark begins; -1 without one.
qsizetype markIn(QStringView name)
{
    // Nearly every name is done with here.
    if (!name.contains(u"onflict"))
        return -1;
    QString matchable;
    if (!name.isValidUtf16()) {
        // An expression does not look at a name that is not UTF-8; its odd bytes stand in no mark.
        matchable = name.toString();
        std::replace_if(
            matchable.begin(), matchable.end(), [](QChar unit) { return unit.isSurrogate(); }, QChar(u'?'));
        name = matchable;
    }
    const auto match = conflictMark().match(name);
    return match.hasMatch() && match.capturedStart() > 0 ? match.capturedStart() : -1;
}

} // namespace

QString nameBehindPlaceholder(const QString &name)
{
    QString behind;
    if (name.startsWith(u'.') && name.endsWith(ICloudEnd) && name.size() > ICloudEnd.size() + 1)
        behind = name.sliced(1, name.size() - 1 - ICloudEnd.size());
    for (const QStringView end : VisibleEnds) {
        if (name.endsWith(end) && name.size() > end.size())
            behind = name.chopped(end.size());
    }
    if (behind == u"."_s || behind == u".."_s)
        return {};
    return behind;
}

QStringList placeholderNames(const QString &name)
{
    QStringList names{u'.' % name % ICloudEnd};
    for (const QStringView end : VisibleEnds)
        names.append(name % end);
    // A name that is too long cannot be asked for either.
    names.removeIf([](const QString &placeholder) { return nameBytes(placeholder) > MaxNameBytes; });
    return names;
}

bool isConflictCopy(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return markIn(dot > 0 ? name.first(dot) : name) >= 0 || markIn(name) >= 0;
}

QString titleBehindConflictCopy(const QString &title)
{
    const qsizetype mark = markIn(title);
    return mark < 0 ? QString() : title.first(mark);
}

bool isSyncTemporary(QStringView name)
{
    const QString behind = nameBehindPlaceholder(name.toString());
    if (!behind.isNull())
        return isSyncTemporary(behind);
    if (name.startsWith(u'.'))
        return isHiddenTemporary(name);
    if (isOurFile(name))
        return false;
    return name.startsWith(u"~$") || isOneOf(VisibleRecordNames, name) || endsWithOneOf(UnfinishedEnds, name);
}

QString conflictCopyName(const QString &name, int number)
{
    const QString mark = number <= 1 ? u" (conflicted copy)"_s : u" (conflicted copy %1)"_s.arg(number);
    const NameParts parts = partsOf(name);
    const QString end = mark % parts.extension;
    const QString stem = cutToBytes(parts.stem, MaxNameBytes - nameBytes(end));
    // An extension that leaves no room for a name is none.
    if (stem.isEmpty())
        return cutToBytes(name, MaxNameBytes - nameBytes(mark)) % mark;
    return stem % end;
}

} // namespace cvtamber
