// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileResult.h"
#include "store/StoreContext.h"
#include "store/StoreDisk.h"

#include <functional>
#include <memory>
#include <vector>

namespace cvtamber {

// A file that is opened, saved and closed in the background.
//
// States (documentState(), a set of bits): Closed at first and after closing; Normal (0) while open;
// SavingError after a save that failed, until one works; InConflict after a save that found another
// program's version and kept it beside.
//   closed -> open        openWithCompletionHandler, or a first save that works
//   open   -> closed      closeWithCompletionHandler, which first saves what has changed; when that fails it
//                         stays open
// A change (updateChangeCount) of an open document is saved by itself five seconds after the first change that
// is not saved yet, and tried again when that failed. A change of a closed one waits until it is saved. A save to its own
// URL that failed, the first one too, leaves the document open with what it holds, which is tried again in the same way;
// not so a new document whose name was in use.
// What is asked for is done in that order, one after the other. Completions run once, from the loop. A document
// that is asked to do something, or is open with changes that are not saved, lives until that is done.
// What fails is told to StoreProblems. Thread: main thread. Owner: shared.
class Document : public std::enable_shared_from_this<Document>
{
public:
    enum class SaveOperation { ForCreating, ForOverwriting };
    enum class ChangeKind { Done, Cleared };
    enum State : int { Normal = 0, Closed = 1 << 0, InConflict = 1 << 1, SavingError = 1 << 2 };
    using Completion = std::function<void(bool success)>;

    Document(StoreContext &context, FileURL fileURL);
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;
    virtual ~Document();

    const FileURL &fileURL() const { return _fileURL; }
    int documentState() const;
    bool hasUnsavedChanges() const;
    // What the last open or save said; Ok before the first.
    FileResult lastResult() const;

    // Reads the file, again when it is open, unless there are changes that are not saved: then they stay.
    void openWithCompletionHandler(Completion completion);
    // Takes the contents of this moment. ForCreating fails when the name is in use. ForOverwriting never loses
    // a version that this document has not read or written itself, see keepsOtherVersion().
    void saveToURL(const FileURL &url, SaveOperation operation, Completion completion);
    void closeWithCompletionHandler(Completion completion);
    void updateChangeCount(ChangeKind kind);

protected:
    // The bytes of the file.
    virtual QByteArray contentsForType() const = 0;
    // False when the bytes could not be understood: then the version on disk is another's and will be kept.
    // The open succeeds all the same.
    virtual bool loadFromContents(const QByteArray &bytes) = 0;
    virtual StoreDisk::OtherVersion otherVersion() const { return StoreDisk::OtherVersion::Keep; }
    StoreContext &context() const { return _context; }

private:
    struct Session;
    // One step of what was asked for: it starts when the step before it has ended, and ends with endStep().
    using Step = std::function<void()>;

    Session &session();
    void addStep(Step step);
    void startStep();
    void endStep(const Completion &completion, bool success);

    void finishOpening(const ReadResult &read);
    struct Contents;
    Contents takeContents();
    enum class Asker { Caller, Autosave };
    void write(const FileURL &url, SaveOperation operation, const Contents &contents, Asker asker,
               const Completion &completion);
    void finishWriting(const FileURL &url, quint64 change, Asker asker, const WriteResult &written);
    void keepTrying(const FileURL &url, Asker asker, const WriteResult &failed);
    void closeOrSave(const Completion &completion);
    void startAutosave();
    void cancelAutosave();
    void autosave();
    // Why it could not be asked for; empty when it was.
    QString askForDownload();
    void tell(StoreProblem::What what, const FileURL &url, const QString &why);

    StoreContext &_context;
    FileURL _fileURL;
    // Only for a document that was opened or changed: a list of many holds none of it.
    std::unique_ptr<Session> _session;
};

using DocumentGroup = std::vector<std::shared_ptr<Document>>;

} // namespace cvtamber
