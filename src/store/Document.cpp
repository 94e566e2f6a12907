// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/Document.h"

#include "base/RunLoop.h"
#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/FileCoordinator.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

using namespace std::chrono_literals;

namespace cvtamber {

namespace {

// Short enough that little is lost when the power goes, long enough not to write at each key.
constexpr std::chrono::nanoseconds AutosaveDelay = 5s;

} // namespace

struct Document::Session
{
    bool isOpen = false;
    bool isInConflict = false;
    bool hasSavingError = false;
    FileResult lastResult;
    // The version that was read or written last.
    FileStamp known;

    // Counts the changes; the number that stood when the contents on the disk were taken.
    quint64 change = 0;
    quint64 savedChange = 0;
    // Nothing up to here needs to be saved any more.
    quint64 clearedChange = 0;
    // Of the first change that the contents taken last do not hold.
    std::optional<std::chrono::nanoseconds> changedAt;
    RunLoop::CallId autosave = RunLoop::CallId::None;
    bool isAutosaving = false;

    // Steps hold no reference to the document: the one that runs keeps it alive.
    std::deque<Step> waiting;
    bool isBusy = false;
};

struct Document::Contents
{
    QByteArray bytes;
    quint64 change = 0;
};

Document::Document(StoreContext &context, FileURL fileURL)
    : _context(context)
    , _fileURL(std::move(fileURL))
{}

Document::~Document() = default;

int Document::documentState() const
{
    if (!_session)
        return Closed;
    return (_session->isOpen ? Normal : Closed) | (_session->isInConflict ? InConflict : 0) |
           (_session->hasSavingError ? SavingError : 0);
}

bool Document::hasUnsavedChanges() const
{
    return _session && _session->change != _session->savedChange;
}

FileResult Document::lastResult() const
{
    return _session ? _session->lastResult : FileResult();
}

Document::Session &Document::session()
{
    if (!_session)
        _session = std::make_unique<Session>();
    return *_session;
}

void Document::addStep(Step step)
{
    session().waiting.push_back(std::move(step));
    startStep();
}

void Document::startStep()
{
    Session &session = *_session;
    if (session.isBusy || session.waiting.empty())
        return;
    session.isBusy = true;
    const Step step = std::move(session.waiting.front());
    session.waiting.pop_front();
    step();
}

void Document::endStep(const Completion &completion, bool success)
{
    if (completion)
        completion(success);
    _session->isBusy = false;
    startStep();
}

void Document::openWithCompletionHandler(Completion completion)
{
    addStep([this, completion = std::move(completion)] {
        _context.coordinator.read(_fileURL, [self = shared_from_this(), completion](const ReadResult &read) {
            self->finishOpening(read);
            self->endStep(completion, self->lastResult().ok());
        });
    });
}

void Document::finishOpening(const ReadResult &read)
{
    Session &session = *_session;
    if (session.isOpen && hasUnsavedChanges()) {
        // What it holds is newer than the file, or there is none yet.
        session.lastResult = {};
        startAutosave();
        return;
    }
    session.lastResult = static_cast<const FileResult &>(read);
    if (!read.ok()) {
        const QString refusal =
            read.outcome == FileResult::Outcome::NotDownloaded ? askForDownload() : QString();
        if (refusal.isEmpty())
            tell(StoreProblem::What::Open, _fileURL, read.message);
        else
            tell(StoreProblem::What::Download, _fileURL, refusal);
        return;
    }
    session.isOpen = true;
    if (!hasUnsavedChanges()) {
        session.known = loadFromContents(read.bytes) ? read.stamp : FileStamp();
        session.isInConflict = false;
    }
    startAutosave();
}

void Document::saveToURL(const FileURL &url, SaveOperation operation, Completion completion)
{
    addStep([this, url, operation, contents = takeContents(), completion = std::move(completion)] {
        write(url, operation, contents, Asker::Caller,
              [this, completion](bool success) { endStep(completion, success); });
    });
}

Document::Contents Document::takeContents()
{
    session().changedAt.reset();
    return {contentsForType(), session().change};
}

void Document::write(const FileURL &url, SaveOperation operation, const Contents &contents, Asker asker,
                     const Completion &completion)
{
    const auto done = [self = shared_from_this(), url, change = contents.change, asker,
                       completion](const WriteResult &written) {
        self->finishWriting(url, change, asker, written);
        completion(written.ok());
    };
    if (operation == SaveOperation::ForCreating) {
        _context.coordinator.create(url, contents.bytes, done);
        return;
    }
    const FileStamp known = url == _fileURL ? _session->known : FileStamp();
    _context.coordinator.replace(url, contents.bytes, known, otherVersion(), done);
}

void Document::finishWriting(const FileURL &url, quint64 change, Asker asker, const WriteResult &written)
{
    Session &session = *_session;
    session.lastResult = static_cast<const FileResult &>(written);
    if (!written.ok()) {
        keepTrying(url, asker, written);
        return;
    }
    _context.problems.forgetUnsaved(this);
    session.isOpen = true;
    session.hasSavingError = false;
    session.known = written.stamp;
    session.savedChange = std::max(change, session.clearedChange);
    _fileURL = url;
    cancelAutosave();
    startAutosave();
    if (written.keptOther.isNil())
        return;
    session.isInConflict = true;
    _context.problems.tell({StoreProblem::What::KeptOtherVersion, url, {}, written.keptOther});
}

void Document::keepTrying(const FileURL &url, Asker asker, const WriteResult &failed)
{
    Session &session = *_session;
    // A disk that stays full is not told again every five seconds.
    const bool isRepeated = asker == Asker::Autosave && session.hasSavingError;
    session.hasSavingError = true;
    if (failed.outcome == FileResult::Outcome::NotDownloaded)
        askForDownload();
    if (!isRepeated)
        tell(StoreProblem::What::Save, url, failed.message);
    if (url == _fileURL && failed.outcome != FileResult::Outcome::AlreadyExists) {
        session.isOpen = true;
        if (!hasUnsavedChanges())
            ++session.change;
        _context.problems.keepUnsaved(this, {url, failed.message, [weak = weak_from_this()](Completion done) {
                                                 if (const auto self = weak.lock())
                                                     self->closeWithCompletionHandler(std::move(done));
                                                 else
                                                     done(true);
                                             }});
    }
    startAutosave();
}

void Document::closeWithCompletionHandler(Completion completion)
{
    addStep([this, completion = std::move(completion)] {
        // What has to be saved is asked for at once, in case the program ends.
        if (_session->isOpen && hasUnsavedChanges()) {
            closeOrSave(completion);
            return;
        }
        _context.runLoop.performAfter(
            0ns, [self = shared_from_this(), completion] { self->closeOrSave(completion); });
    });
}

void Document::closeOrSave(const Completion &completion)
{
    Session &session = *_session;
    if (session.isOpen && hasUnsavedChanges()) {
        write(_fileURL, SaveOperation::ForOverwriting, takeContents(),
              completion ? Asker::Caller : Asker::Autosave, [this, completion](bool success) {
                  if (success)
                      closeOrSave(completion);
                  else
                      endStep(completion, false);
              });
        return;
    }
    if (session.isOpen) {
        session.isOpen = false;
        session.isInConflict = false;
        session.hasSavingError = false;
    }
    endStep(completion, true);
}

void Document::updateChangeCount(ChangeKind kind)
{
    Session &session = this->session();
    if (kind == ChangeKind::Cleared) {
        session.savedChange = session.clearedChange = session.change;
        _context.problems.forgetUnsaved(this);
        session.changedAt.reset();
        cancelAutosave();
        return;
    }
    ++session.change;
    if (!session.changedAt)
        session.changedAt = _context.runLoop.now();
    startAutosave();
}

void Document::startAutosave()
{
    Session &session = *_session;
    if (!session.isOpen || !hasUnsavedChanges() || session.isAutosaving ||
        session.autosave != RunLoop::CallId::None)
        return;
    const auto now = _context.runLoop.now();
    const auto due = session.changedAt.value_or(now) + AutosaveDelay;
    const auto delay = due > now ? due - now : AutosaveDelay;
    // The call holds the document: nobody else may be left who has its text.
    session.autosave = _context.saves.perform(delay, [self = shared_from_this()] {
        self->_session->autosave = RunLoop::CallId::None;
        self->autosave();
    });
}

void Document::cancelAutosave()
{
    // The call may hold the last reference.
    const auto self = shared_from_this();
    _context.saves.cancel(std::exchange(_session->autosave, RunLoop::CallId::None));
}

void Document::autosave()
{
    _session->isAutosaving = true;
    addStep([this, contents = takeContents()] {
        const auto done = [this](bool) {
            _session->isAutosaving = false;
            startAutosave();
            endStep({}, true);
        };
        if (_session->isOpen && hasUnsavedChanges())
            write(_fileURL, SaveOperation::ForOverwriting, contents, Asker::Autosave, done);
        else
            done(true);
    });
}

QString Document::askForDownload()
{
    const FileResult asked = _context.cloud.startDownloading(_fileURL);
    if (asked.ok())
        return {};
    return asked.message.isEmpty() ? QStringLiteral("it cannot be downloaded") : asked.message;
}

void Document::tell(StoreProblem::What what, const FileURL &url, const QString &why)
{
    _context.log.error(loggedURL(url) % QLatin1String(" - ") % why);
    _context.problems.tell({what, url, why, {}});
}

} // namespace cvtamber
