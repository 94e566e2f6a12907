// SPDX-License-Identifier: GPL-3.0-or-later
// busy_store ROOT JOURNAL SEED FIRST-NUMBER
//
// Opens the store in ROOT, prints what it lists as one line of JSON, and waits for a line on standard input. Then it
// works on the store, and tells JOURNAL, until it is killed. It ends by itself when the input ends.
#include "crashes/BusyStore.h"
#include "support/StoreListing.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QSocketNotifier>

#include <cstdio>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

constexpr int ExitUsage = 2;

void printListing(RunningStore &store)
{
    QJsonObject lines;
    for (const auto &[key, value] : listingOf(*store.storage, store.disk)) {
        const QString shown = key.contains(u".tamber"_s) ? BusyStore::versionIn(value) : value;
        lines.insert(key, shown.isNull() ? QJsonValue() : QJsonValue(shown));
    }
    std::printf("%s\n", QJsonDocument(lines).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 5) {
        std::fputs("busy_store ROOT JOURNAL SEED FIRST-NUMBER\n", stderr);
        return ExitUsage;
    }
    const auto journal = std::make_shared<Journal>(arguments[2]);
    RunningStore store(arguments[1]);
    store.problems.setObserver(journal);
    if (!journal->isOpen() || !store.storage) {
        std::fputs("the store or the journal cannot be opened\n", stderr);
        return ExitUsage;
    }
    BusyStore busy(store, *journal, arguments[3].toUInt(), arguments[4].toInt());
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        input.setEnabled(false);
        if (std::getchar() == EOF)
            QCoreApplication::quit();
        else
            busy.start();
    });
    // Folders are listed, and leftovers swept, in the background.
    store.whenAtRest([&] { printListing(store); });
    return QCoreApplication::exec();
}
