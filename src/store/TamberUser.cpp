// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberUser.h"

#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/ContainerDisk.h"
#include "store/FileCoordinator.h"
#include "store/KnownRecords.h"
#include "store/Records.h"
#include "store/StoreNames.h"
#include "store/TamberUsers.h"
#include "store/UserDirectories.h"

#include <utility>

namespace cvtamber {

using Outcome = FileResult::Outcome;

namespace {

// As a document does.
constexpr std::chrono::seconds RetryDelay{5};

} // namespace

TamberUser::TamberUser(StoreContext &context, const QString &firstName, const QString &lastName,
                       const QString &displayName)
    : TamberFilesAndFoldersContainer(context)
    , _firstName(firstName)
    , _lastName(lastName)
    , _displayName(displayName)
{}

TamberUser::~TamberUser()
{
    context().log.info(QStringLiteral("TamberUser::dealloc"));
}

std::shared_ptr<TamberUser> TamberUser::withFolder(StoreContext &context, const QString &folderName,
                                                   const std::shared_ptr<TamberUsers> &users)
{
    auto user = std::make_shared<TamberUser>(context, QString(), QString(), QString());
    user->_folderName = folderName;
    user->_users = users;
    user->initWithFolder(folderName, users);
    return user->openRecord() ? user : nullptr;
}

std::shared_ptr<TamberUser> TamberUser::self()
{
    return std::static_pointer_cast<TamberUser>(shared_from_this());
}

FileURL TamberUser::url() const
{
    const auto registry = users();
    return registry ? registry->url().appendingDirectory(_folderName) : FileURL();
}

FileURL TamberUser::fileURL() const
{
    return url().appendingFile(UserRecordName.toString());
}

QString TamberUser::description() const
{
    return _displayName + u" (" + _firstName + u' ' + _lastName + u')';
}

bool TamberUser::openRecord()
{
    const ReadResult record = context().disk.read(fileURL());
    if (!record.ok()) {
        const auto kind = context().disk.status(url()).kind;
        if (kind != FileStatus::Kind::Folder && kind != FileStatus::Kind::Unknown)
            return false;
        if (record.outcome == Outcome::Missing && isCertainlyAbsent(context().disk, fileURL())) {
            if (!isUbiquitous())
                clearDirectoryWithoutRecord(context(), url());
            return false;
        }
        _isRecordDoubtful = true;
        if (record.outcome == Outcome::NotDownloaded && isUbiquitous())
            context().cloud.startDownloading(fileURL());
    }
    if (!takeRecord(record))
        parseUserFileData({});
    loadContent();
    return true;
}

bool TamberUser::takeRecord(const ReadResult &record)
{
    const QString text = record.ok() ? textFromUtf8(record.bytes) : QString();
    if (!text.isNull()) {
        parseUserFileData(text);
        if (isUbiquitous())
            KnownRecords::remember(context(), fileURL(), record.bytes);
        return true;
    }
    const QString why = record.ok() ? QStringLiteral("not UTF-8") : record.message;
    context().log.error(why);
    context().problems.tell({StoreProblem::What::Open, url(), why, {}});
    return false;
}

void TamberUser::parseUserFileData(const QString &text)
{
    const auto record = UserRecord::fromText(text);
    _firstName = record.firstName;
    _lastName = record.lastName;
    _displayName = record.displayName;
}

void TamberUser::reloadDataWitCompletionHandler(const Completion &completion)
{
    const bool isSaved = _scheduledSave == RunLoop::CallId::None && _savesUnderWay == 0;
    if (isSaved && !takeRecord(context().disk.read(fileURL())))
        return;
    if (completion)
        completion();
}

QString TamberUser::userFileData() const
{
    return UserRecord{_firstName, _lastName, _displayName}.toText();
}

void TamberUser::setFirstName(const QString &name)
{
    setNamePart(_firstName, name);
}

void TamberUser::setLastName(const QString &name)
{
    setNamePart(_lastName, name);
}

void TamberUser::setDisplayName(const QString &name)
{
    setNamePart(_displayName, name);
}

void TamberUser::setNamePart(QString &part, const QString &name)
{
    if (part == name)
        return;
    part = name;
    scheduleSave();
}

void TamberUser::scheduleSave()
{
    saveLater(std::chrono::nanoseconds{0});
}

void TamberUser::saveLater(std::chrono::nanoseconds delay)
{
    if (_scheduledSave != RunLoop::CallId::None)
        return;
    // The registry too, which knows where the record is.
    const auto save = [user = self(), registry = users()] {
        user->_scheduledSave = RunLoop::CallId::None;
        user->saveUserData();
    };
    _scheduledSave = context().saves.perform(delay, save);
}

bool TamberUser::cancelScheduledSave()
{
    const auto call = std::exchange(_scheduledSave, RunLoop::CallId::None);
    context().saves.cancel(call);
    return call != RunLoop::CallId::None;
}

void TamberUser::saveScheduledChanges()
{
    // Without a record the next start would not list what was added meanwhile.
    if (cancelScheduledSave() || (_isRecordDoubtful && isRecordLost()))
        saveUserData();
}

void TamberUser::prepareToMove()
{
    saveScheduledChanges();
    if (isRecordLost())
        saveUserData();
}

bool TamberUser::isRecordLost() const
{
    return !isUbiquitous() && _savesUnderWay == 0 && context().disk.isFolder(url()) &&
           isCertainlyAbsent(context().disk, fileURL());
}

DocumentGroup TamberUser::documents() const
{
    DocumentGroup all(files().begin(), files().end());
    for (const FolderPointer &folder : folders()) {
        const DocumentGroup inFolder = folder->documents();
        all.insert(all.end(), inFolder.begin(), inFolder.end());
    }
    return all;
}

void TamberUser::stopSaving()
{
    cancelScheduledSave();
    _isSavingStopped = true;
    context().problems.forgetUnsaved(this);
}

void TamberUser::saveWhatIsOwed()
{
    if (!_isRecordOwed && !isRecordLost())
        return;
    cancelScheduledSave();
    saveUserData();
}

void TamberUser::saveUserData()
{
    const FileURL record = fileURL();
    if (record.isNil() || _isSavingStopped)
        return;
    if (_isDirectoryOwed)
        _isDirectoryOwed = !ContainerDisk(context()).makeFolders(url()).ok();
    ++_savesUnderWay;
    context().coordinator.replace(
        record, utf8FromText(userFileData()), {}, StoreDisk::OtherVersion::Replace,
        [user = self(), registry = users()](const WriteResult &result) { user->recordSaved(result); });
}

void TamberUser::recordSaved(const WriteResult &result)
{
    --_savesUnderWay;
    if (result.ok()) {
        _isRecordOwed = false;
        context().problems.forgetUnsaved(this);
    } else {
        keepTrying(result);
    }
    for (const auto &done : std::exchange(_waitForRecord, {}))
        done(result.ok());
}

void TamberUser::keepTrying(const WriteResult &failed)
{
    if (!std::exchange(_isRecordOwed, true))
        logProblem(context(), StoreProblem::What::Save, url(), failed);
    // A directory that has gone since takes its user along.
    const bool isGone = !_isDirectoryOwed && context().disk.status(url()).kind == FileStatus::Kind::Missing;
    if (isGone || _isSavingStopped) {
        context().problems.forgetUnsaved(this);
        return;
    }
    context().problems.keepUnsaved(
        this, {url(), failed.message, [weak = weak_from_this()](std::function<void(bool)> done) {
                   const auto user = std::static_pointer_cast<TamberUser>(weak.lock());
                   if (!user || !user->_isRecordOwed) {
                       done(true);
                       return;
                   }
                   user->saveWhatIsOwed();
                   if (user->_savesUnderWay > 0)
                       user->_waitForRecord.push_back(std::move(done));
                   else
                       done(false);
               }});
    saveLater(RetryDelay);
}

void TamberUser::storeInUsers(const std::shared_ptr<TamberUsers> &users, const Completion & /*completion*/)
{
    _users = users;
    setParent(users);
    _folderName = uniqueUserFolderName(context(), users->url());
    const FileResult made = ContainerDisk(context()).makeFolders(url());
    logProblem(context(), StoreProblem::What::Create, url(), made);
    _isDirectoryOwed = !made.ok();
    saveUserData();
}

void TamberUser::deleteStorageWithCompletion(StorageCompletion completion)
{
    TamberFilesAndFoldersContainer::deleteStorageWithCompletion(
        [user = self(), completion = std::move(completion)](bool) { user->removeRecord(completion); });
}

void TamberUser::removeRecord(const StorageCompletion &completion)
{
    stopSaving();
    ContainerDisk(context()).coordinatedRemoveItemAtURL(
        fileURL(),
        [user = self(), completion](const FileResult &result) { user->recordRemoved(result, completion); });
}

void TamberUser::recordRemoved(const FileResult &result, const StorageCompletion &completion)
{
    const bool isGone = result.ok() || result.outcome == Outcome::Missing;
    if (!isGone) {
        _isSavingStopped = false;
        tellProblem(context(), StoreProblem::What::Delete, url(), result);
    }
    if (!completion)
        return;
    if (isUbiquitous()) {
        completion(result.ok());
        return;
    }
    context().coordinator.remove(url(), [user = self(), completion, result](const FileResult &removed) {
        tellProblem(user->context(), StoreProblem::What::Delete, user->url(), removed);
        completion(result.ok());
    });
}

QString userDisplayName(const TamberUser *user)
{
    if (!user)
        return {};
    const QString &first = user->firstName();
    const QString &last = user->lastName();
    if (!user->displayName().isEmpty())
        return user->displayName();
    if (!first.isEmpty() && !last.isEmpty())
        return first + u' ' + last;
    if (!first.isEmpty())
        return first;
    return last.isEmpty() ? user->displayName() : last;
}

} // namespace cvtamber
