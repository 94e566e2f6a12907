// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CloudRouting.h"
#include "store/ContainerListing.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

// What is known about the item, one letter each.
ReportedItem item(QStringView known)
{
    return {.isFolderRecord = known.contains(u'R'),
            .isDownloaded = known.contains(u'd'),
            .isDirectChild = known.contains(u'c'),
            .isFolderListed = known.contains(u'l'),
            .isFolderBeingOpened = known.contains(u'o')};
}

} // namespace

class tst_Routing : public QObject
{
    Q_OBJECT

private slots:
    void step_data();
    void step();
    void directChild_data();
    void directChild();
    void listing();
};

void tst_Routing::step_data()
{
    using Report = CloudReport;
    using Step = CloudStep;
    columns<Report, QString, Step>("report", "known", "expected");
    row("a document", Report::Added, u"dc"_s, Step::ListDocument);
    row("a placeholder of one", Report::Added, u"c"_s, Step::ListDocument);
    row("a document in a folder", Report::Added, u"dl"_s, Step::HandToFolder);
    row("before its folder", Report::Added, u"d"_s, Step::KeepAsOrphan);
    row("while its folder is being opened", Report::Added, u"do"_s, Step::KeepAsOrphan);
    row("a document has gone", Report::Deleted, u"c"_s, Step::UnlistDocument);
    row("gone from a folder", Report::Deleted, u"l"_s, Step::HandToFolder);
    row("gone from an unknown folder", Report::Deleted, QString(), Step::ForgetOrphan);
    row("a document's bytes", Report::Downloaded, u"dc"_s, Step::Nothing);
    row("bytes before its folder", Report::Downloaded, u"d"_s, Step::Nothing);
    row("newer bytes in a folder", Report::DownloadedAgain, u"dl"_s, Step::Nothing);
    row("a folder", Report::Added, u"Rd"_s, Step::OpenFolder);
    row("a folder that is listed", Report::Added, u"Rdl"_s, Step::Nothing);
    row("a folder that is being opened", Report::Added, u"Rdo"_s, Step::Nothing);
    row("a folder's placeholder", Report::Added, u"R"_s, Step::StartDownload);
    row("a listed folder's placeholder", Report::Added, u"Rl"_s, Step::Nothing);
    row("a record as a direct child", Report::Added, u"Rdc"_s, Step::OpenFolder);
    row("a folder's record is here", Report::Downloaded, u"Rd"_s, Step::OpenFolder);
    row("the record of a listed folder", Report::Downloaded, u"Rdl"_s, Step::OpenFolder);
    row("a folder has gone", Report::Deleted, u"Rl"_s, Step::UnlistFolder);
    row("gone while being opened", Report::Deleted, u"Ro"_s, Step::UnlistFolder);
    row("a folder has another name", Report::DownloadedAgain, u"Rdl"_s, Step::ReloadFolder);
    row("an unknown folder has", Report::DownloadedAgain, u"Rd"_s, Step::OpenFolder);
}

void tst_Routing::step()
{
    QFETCH(CloudReport, report);
    QFETCH(QString, known);
    QTEST(stepFor(report, item(known)), "expected");
}

void tst_Routing::directChild_data()
{
    columns<QString, bool>("path", "expected");
    row("in it", u"/cloud/users/x.tamber"_s, true);
    row("below it", u"/cloud/users/a/x.tamber"_s, false);
    row("above it", u"/cloud/x.tamber"_s, false);
    row("in another of the same length", u"/cloud/other/x.tamber"_s, true);
}

void tst_Routing::directChild()
{
    QFETCH(QString, path);
    QTEST(isDirectChildByLength(FileURL::directory(u"/cloud/users"_s), FileURL::file(path)), "expected");
}

void tst_Routing::listing()
{
    using Kind = FileStatus::Kind;
    const QString uuid = u"0C9B3E60-5A0D-4F43-9D77-0D3D0B4C6A11"_s;
    StoreDisk::Listing disk;
    disk.entries = {{u"b.tamber"_s, Kind::File},      {u"A.tamber"_s, Kind::File},
                    {u"Report.TAMBER"_s, Kind::File}, {u".tamber"_s, Kind::File},
                    {u".x.tamber"_s, Kind::File},     {u"Letter.tamber.nextcloud"_s, Kind::File},
                    {u"tamber"_s, Kind::File},        {u"folder.tamber"_s, Kind::Folder},
                    {u".git"_s, Kind::Folder},        {uuid, Kind::Folder},
                    {u"user.txt"_s, Kind::File},      {u"what.tamber"_s, Kind::Unknown}};
    const ContainerListing found = ContainerListing::of(disk);
    QCOMPARE(found.documents, std::vector<QString>({u"b.tamber"_s, u"A.tamber"_s}));
    QCOMPARE(found.folders, QStringList({u"folder.tamber"_s, u".git"_s, uuid}));
    // Ours are shown, the nine others are hidden.
    QCOMPARE(found.toLog(), QString(u"("_s + uuid + u", user.txt, <hidden> x 10)"_s));
}

QTEST_APPLESS_MAIN(tst_Routing)
#include "tst_routing.moc"
