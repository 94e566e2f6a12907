// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreContext.h"
#include "support/Rows.h"

using namespace cvtamber;
using namespace Qt::StringLiterals;

class TestStoreContext : public QObject
{
    Q_OBJECT

private slots:
    void loggedURLs_data();
    void loggedURLs();
};

void TestStoreContext::loggedURLs_data()
{
    columns<FileURL, QString>("url", "logged");
    const QString user = u"/store/ActiveUsers/0A1B2C3D-0000-4000-8000-0123456789AB"_s;
    row("a registry", FileURL::directory(u"/store/ActiveUsers"_s), u"/store/ActiveUsers/"_s);
    row("a user", FileURL::directory(user), user + u'/');
    row("a user's record", FileURL::file(user + u"/user.txt"_s), user + u"/user.txt"_s);
    row("a folder's record", FileURL::file(user + u"/folder.dat"_s), user + u"/folder.dat"_s);
    row("a document", FileURL::file(user + u"/Letter.tamber"_s), user + u"/<hidden>"_s);
    row("a title like a directory", FileURL::file(u"/s/ArchivedUsers.tamber"_s), u"/s/<hidden>"_s);
    row("no digits of a UUID", FileURL::directory(u"/s/Anna Ber-g 12-3456-7890-abcdefghijkl"_s),
        u"/s/<hidden>/"_s);
    row("the top", FileURL::directory(u"/"_s), u"/"_s);
    row("nil", FileURL(), u"(null)"_s);
}

void TestStoreContext::loggedURLs()
{
    QFETCH(const FileURL, url);
    QTEST(loggedURL(url), "logged");
}

QTEST_APPLESS_MAIN(TestStoreContext)
#include "tst_storecontext.moc"
