// SPDX-License-Identifier: GPL-3.0-or-later
// sync_store CLOUD-FOLDER TRASH SETTINGS
//
// Keeps a store in the folder, as the application does where the person has chosen it, carries out commands from standard input
// and answers on standard output: a line of JSON each, see SyncedStore. It ends when the input ends.
#include "base/SettingsDefaults.h"
#include "platform/desktop/ChosenFolderContainer.h"
#include "support/FaultyFileOperations.h"
#include "sync/SyncedStore.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

constexpr int ExitUsage = 2;

void print(const QJsonObject &line)
{
    std::printf("%s\n", QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

// Tells of a document that is about to be taken from the disk, with the text that it has at that moment.
void tellRemoval(const QString &root, const QString &path)
{
    const QString name = path.section(u'/', -1);
    QByteArray bytes;
    FileStamp stamp;
    if (!name.endsWith(u".tamber"_s) || name.startsWith(u'.') ||
        FileOperations::system().read(path, bytes, stamp))
        return;
    const QJsonObject line{{u"removed"_s, path.mid(root.size() + 1)},
                           {u"text"_s, SyncedStore::hashOf(bytes)}};
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [line] { print(line); }, Qt::QueuedConnection);
}

// Hands over each line that has come.
class CommandReader
{
public:
    explicit CommandReader(SyncedStore &store)
        : _store(store)
        , _notifier(STDIN_FILENO, QSocketNotifier::Read)
    {
        QObject::connect(&_notifier, &QSocketNotifier::activated, &_notifier, [this] { read(); });
    }

private:
    void read()
    {
        char bytes[65536];
        const ssize_t size = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (size <= 0) {
            _notifier.setEnabled(false);
            QCoreApplication::quit();
            return;
        }
        _buffer.append(bytes, size);
        for (qsizetype end = _buffer.indexOf('\n'); end >= 0; end = _buffer.indexOf('\n')) {
            const QByteArray line = _buffer.first(end);
            _buffer.remove(0, end + 1);
            _store.carryOut(QJsonDocument::fromJson(line).object());
        }
    }

    SyncedStore &_store;
    QSocketNotifier _notifier;
    QByteArray _buffer;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fputs("sync_store CLOUD-FOLDER TRASH SETTINGS\n", stderr);
        return ExitUsage;
    }
    SettingsDefaults defaults(arguments[3]);
    defaults.setValue(CloudFolderDefault.toString(), arguments[1]);
    FaultyFileOperations operations;
    operations.setBefore([root = arguments[1] + u"/Documents"_s](auto call, const QString &path) {
        if (call == FaultyFileOperations::Call::RemoveFile)
            tellRemoval(root, path);
    });
    RunningStore store(arguments[2], operations, [&](RunningStore &parts) {
        return std::make_unique<ChosenFolderContainer>(
            ChosenFolderContainer::Surroundings{parts.loop, parts.pool, operations, parts.log, defaults});
    });
    store.context.knownRecords.keepIn(defaults);
    const auto synced = std::make_shared<SyncedStore>(store, &print);
    store.problems.setObserver(synced);
    if (!synced->open()) {
        std::fputs("the store cannot be opened\n", stderr);
        return ExitUsage;
    }
    const CommandReader reader(*synced);
    return QCoreApplication::exec();
}
