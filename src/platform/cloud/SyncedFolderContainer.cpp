// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/SyncedFolderContainer.h"

#include "base/ErrorText.h"
#include "base/FileOperations.h"
#include "base/SystemLog.h"
#include "base/TaskRunner.h"
#include "platform/cloud/SyncClientSocket.h"
#include "platform/cloud/SyncedFolderQuery.h"
#include "store/CloudNames.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace cvtamber {

namespace {

using Outcome = FileResult::Outcome;
using Kind = FileStatus::Kind;

FileResult stillInCloud()
{
    return {Outcome::Failed,
            u"this file is still in the cloud; make it available offline in the sync program"_s};
}

bool isBelow(const QString &path, const QString &folder)
{
    return path == folder || path.startsWith(folder.endsWith(u'/') ? folder : QString(folder % u'/'));
}

} // namespace

SyncedFolderContainer::SyncedFolderContainer(const QString &folder,
                                             const FolderFollower::Surroundings &surroundings,
                                             const QString &runtimeFolder)
    : _surroundings(surroundings)
    , _folder(FileURL::directory(QDir::cleanPath(folder)))
    , _runtimeFolder(runtimeFolder)
    , _answers(std::make_shared<std::map<QString, Answer>>())
{}

SyncedFolderContainer::SyncedFolderContainer(const QString &folder, RunLoop &runLoop, TaskRunner &tasks,
                                             FileOperations &operations, SystemLog &log)
    : SyncedFolderContainer(folder, {runLoop, tasks, operations, log, FolderWatcher::bestFactory(runLoop)},
                            qEnvironmentVariable("XDG_RUNTIME_DIR"))
{}

SyncedFolderContainer::~SyncedFolderContainer() = default;

FileURL SyncedFolderContainer::url() const
{
    if (_folder.isNil())
        return {};
    FileOperations &operations = _surroundings.operations;
    // "/." looks through a link to the folder that it leads to.
    if (operations.status(_folder.path() % "/."_L1).kind != Kind::Folder)
        return {};
    const QString documents = _folder.appendingDirectory(u"Documents"_s).path();
    if (operations.status(documents).kind == Kind::Missing)
        operations.makeFolder(documents);
    const std::lock_guard lock(_mutex);
    _documents = QFileInfo(documents).canonicalFilePath();
    return _folder;
}

bool SyncedFolderContainer::isUbiquitousItem(const FileURL &url) const
{
    if (url.isNil() || _folder.isNil())
        return false;
    const QString path = QDir::cleanPath(url.path());
    const std::lock_guard lock(_mutex);
    return isBelow(path, _folder.path()) || (!_documents.isEmpty() && isBelow(path, _documents));
}

FileResult SyncedFolderContainer::startDownloading(const FileURL &url)
{
    const FileStatus status = _surroundings.operations.status(url.path());
    if (status.kind == Kind::File || status.kind == Kind::Folder)
        return {};
    if (status.kind == Kind::Unknown)
        return {Outcome::Failed, errorText(status.error)};
    const FileURL placeholder = placeholderOf(url);
    if (placeholder.isNil())
        return {Outcome::Missing, errorText(std::make_error_code(std::errc::no_such_file_or_directory))};
    const QString socket = socketFor(placeholder);
    if (socket.isNull())
        return stillInCloud();
    const bool isDeaf = (*_answers)[socket].isDeaf;
    ask(socket, placeholder);
    return isDeaf ? stillInCloud() : FileResult();
}

std::unique_ptr<MetadataQuery> SyncedFolderContainer::makeQuery()
{
    return std::make_unique<SyncedFolderQuery>(_surroundings);
}

// Nil when there is none.
FileURL SyncedFolderContainer::placeholderOf(const FileURL &url) const
{
    const FileURL folder = url.deletingLastPathComponent();
    const QStringList names = placeholderNames(url.lastPathComponent());
    for (const QString &name : names) {
        FileURL placeholder = folder.appendingFile(name);
        if (_surroundings.operations.status(placeholder.path()).kind == Kind::File)
            return placeholder;
    }
    return {};
}

// Null when nobody listens for that kind of placeholder.
QString SyncedFolderContainer::socketFor(const FileURL &placeholder) const
{
    const QString kind = placeholder.pathExtension();
    QString program;
    if (kind == "nextcloud"_L1)
        program = u"Nextcloud"_s;
    else if (kind == "owncloud"_L1)
        program = u"ownCloud"_s;
    if (program.isNull() || _runtimeFolder.isEmpty())
        return {};
    const QString socket = _runtimeFolder % u'/' % program % "/socket"_L1;
    return _surroundings.operations.status(socket).kind == Kind::Other ? socket : QString();
}

void SyncedFolderContainer::ask(const QString &socket, const FileURL &placeholder)
{
    const auto error = std::make_shared<std::error_code>();
    const auto work = [=] { *error = askForDownload(socket, placeholder.path()); };
    const auto completion = [=, request = ++_requests, answers = _answers, &log = _surroundings.log] {
        Answer &last = (*answers)[socket];
        if (request > last.request)
            last = {request, bool(*error)};
        if (*error)
            log.error(u"The sync program could not be asked for a file: "_s % errorText(*error));
    };
    _surroundings.tasks.run(work, completion);
}

} // namespace cvtamber
