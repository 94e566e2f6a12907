// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DelayedCall.h"
#include "base/InterfaceBase.h"
#include "device/CVDeviceDelegates.h"
#include "device/LinkObserver.h"
#include "ui/ViewController.h"

#include <QByteArray>

#include <optional>

namespace cvtamber {

struct AppContext;
class CVTransferViewController;

class CVTransferControllerDelegate : public InterfaceBase
{
public:
    // Once, when all of it has arrived; never for a transfer that failed. The screen is still up and may be dismissed.
    virtual void cvTransferControllerTransferFinished(CVTransferViewController & /*transfer*/) {}
    // A person closes it. A screen that is not dismissed in this call dismisses itself.
    virtual void cvTransferCloseClicked() = 0;
};

// Runs one transfer with the device: asks whether to translate, shows how far it is, and says how it ended.
//
//   idle     -> asking (it appears) | failed (the device is not connected or busy) | ended (nothing to transfer)
//   asking   -> running (the question is answered) | failed (as above, or closed with Cancel)
//   running  -> ended (all of it has arrived) | failed (by the link, by the device, or with Cancel)
//   failed   -> running, or asking where nothing was answered (the whole again, once the device is there)
//
// A running transfer that no confirmation comes for is stalled until one does. OK shows when ended or failed, and always
// closes; Cancel has its place while the transfer runs. It ends a store or an emboss on its way and says what the device
// has of it. It leaves a fetch, which the device goes on with, and whatever has been sent to its end: both close the
// screen. What the device says when no transfer runs is dropped. A store that failed on its way has left an
// incomplete file on the device: that is said, and the file can be deleted. A fetched text that may lack its end is
// handed over and says so, see mayBeIncomplete().
// From viewDidLoad until it has gone the screen is the device's upload and download delegate, and all its life a link
// observer. Thread: main thread. Owner: whoever presents it; the delegate is weak.
class CVTransferViewController final : public cvtamber::ViewController,
                                       public CVUploadFileDelegate,
                                       public CVDownloadFileDelegate,
                                       public LinkObserver
{
    Q_OBJECT
    // What is transferred; may be empty.
    Q_PROPERTY(QString labelText READ labelText NOTIFY changed)
    // 0 to 1, for the bar.
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    // A transfer is under way and not stalled.
    Q_PROPERTY(bool busy READ isBusy NOTIFY changed)
    // The device does not confirm what it is sent.
    Q_PROPERTY(bool stalled READ isStalled NOTIFY changed)
    // It ended well.
    Q_PROPERTY(bool finished READ isFinished NOTIFY changed)
    // Under the bar: how it ended or gets on; empty while there is nothing to say, and where a problem is.
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    // What went wrong or is stalled, and what to do; empty for none.
    Q_PROPERTY(QString problemText READ problemText NOTIFY changed)
    // The OK button, and Cancel in its place; Escape is the one that is visible.
    Q_PROPERTY(bool okVisible READ isOkVisible NOTIFY changed)
    Q_PROPERTY(QString okTitle READ okTitle CONSTANT)
    Q_PROPERTY(bool cancelVisible READ isCancelVisible NOTIFY changed)
    Q_PROPERTY(QString cancelTitle READ cancelTitle CONSTANT)
    // The whole again, and away with what a store has left; only after a failure, and while the device is there.
    Q_PROPERTY(bool againVisible READ isAgainVisible NOTIFY changed)
    Q_PROPERTY(QString againTitle READ againTitle CONSTANT)
    Q_PROPERTY(bool deleteVisible READ isDeleteVisible NOTIFY changed)
    Q_PROPERTY(QString deleteTitle READ deleteTitle CONSTANT)

public:
    // The buttons of the question.
    enum QuestionButton : int { TranslateButton = 0, AsItIsButton = 1, CancelButton = 2 };

    // The context outlives the screen. A null text is no text.
    static std::shared_ptr<CVTransferViewController>
    withInputTextAndOutputFilename(AppContext &context, const QString &text, const QString &fileName);
    // Nothing sends data: the screen asks nothing, shows no label and can be closed.
    static std::shared_ptr<CVTransferViewController>
    withInputDataAndOutputFilename(AppContext &context, const QByteArray &data, const QString &fileName);
    static std::shared_ptr<CVTransferViewController> withCorvaneFileToDownload(AppContext &context,
                                                                               const QString &fileName);
    // Embosses the text.
    static std::shared_ptr<CVTransferViewController>
    withInputTextAndCaption(AppContext &context, const QString &text, const QString &caption);

    explicit CVTransferViewController(AppContext &context);
    ~CVTransferViewController() override;

    void setDelegate(const std::weak_ptr<CVTransferControllerDelegate> &delegate) { _delegate = delegate; }

    // Null where the transfer has no such thing.
    const QString &downloadedFileName() const { return _fileToDownload; }
    const QString &downloadedString() const { return _downloadedString; } // null until it was fetched
    const QString &remoteOutputFilename() const { return _outputFilename; }
    const QString &inputText() const { return _inputText; }
    // The device fell silent before it said that the file was complete, and its length does not tell that it is.
    bool mayBeIncomplete() const;
    // The name to keep the fetched file under, which says where it may be incomplete.
    QString nameToKeep() const;

    const QString &labelText() const { return _labelText; }
    double progress() const { return _progress; }
    bool isBusy() const { return _step == Step::Running && !_isStalled; }
    bool isStalled() const { return _isStalled; }
    bool isFinished() const { return _step == Step::Ended; }
    QString statusText() const;
    QString problemText() const;
    bool isOkVisible() const { return isFinished() || _step == Step::Failed; }
    QString okTitle() const;
    bool isCancelVisible() const { return _step == Step::Running; }
    QString cancelTitle() const;
    bool isAgainVisible() const;
    QString againTitle() const;
    bool isDeleteVisible() const;
    QString deleteTitle() const;
    // It says itself that the link has ended under it, or is about to.
    bool tellsLoss() const { return _step == Step::Running || _hasToldLoss; }

    // What a person does, through the view; nothing where the button is not visible.
    Q_INVOKABLE void okClicked();
    Q_INVOKABLE void cancelClicked();
    Q_INVOKABLE void againClicked();
    Q_INVOKABLE void deleteClicked();

    void cvUploadProgress(float fraction) override;
    void cvFileUploaded() override;
    void cvUploadReplacedCharacters(qsizetype count) override;
    void cvFileUploadFailed(const QString &reason) override;
    void cvDownloadProgress(float fraction) override;
    void cvFileDownloadOutcome(const FetchOutcome &outcome) override;
    void cvFileDownloaded(const QString &text) override;
    void cvFileDownloadFailed(const QString &reason) override;

    void linkConnected() override;
    void linkLost(const QString &reason) override;
    void linkClosed() override { linkLost({}); }
    void linkStalled() override;
    void linkWritesConfirmed() override;
    void linkWriteFailed(const QString &) override { _hasFailedWrite = true; }

signals:
    void changed();
    void progressChanged();

protected:
    void viewDidLoad() override;
    void viewDidAppear() override;
    void viewDidDisappear() override;

private:
    enum class Step { Idle, Asking, Running, Ended, Failed };
    enum class Kind { Nothing, Fetch, Store, Emboss };

    Kind kind() const;
    bool isFetching() const { return _step == Step::Running && kind() == Kind::Fetch; }
    bool isSending() const { return _step == Step::Running && kind() != Kind::Fetch; }
    bool isAllWritten() const;
    // Keys of the texts, null for none: why it cannot start now, what the end of the link did.
    const char *obstacle() const;
    const char *lossProblem() const;
    const char *cancelProblem() const;
    bool hasFetchedNothing() const;
    void makeLabelText();
    void askForBackTranslation();
    void askForForwardTranslation();
    void ask(const char *title, const QStringList &buttons);
    void questionAnswered(int button);
    void startTransfer();
    bool hasLeftFile() const;
    void showProgress(float fraction);
    void goesOn();
    void finishSending();
    void finish();
    void fail(const char *problem);
    void failByLoss();
    void close();
    void setStep(Step step);
    void tellDoubts() const;
    std::shared_ptr<CVTransferViewController> self();

    AppContext &_context;
    std::weak_ptr<CVTransferControllerDelegate> _delegate;
    QString _inputText;
    QByteArray _inputData;
    QString _outputFilename;
    QString _fileToDownload;
    QString _caption;
    QString _downloadedString;
    QString _labelText;
    // A key of the texts; null for none.
    const char *_problem = nullptr;
    FetchOutcome _outcome;
    Step _step = Step::Idle;
    double _progress = 0;
    int _announcedQuarters = 0;
    // Until the first confirmation.
    DelayedCall _stallWatch;
    bool _isStalled = false;
    std::optional<bool> _isTranslated; // the answer to the question
    bool _hasFailedWrite = false;
    bool _hasToldLoss = false; // until the link is there again
    // The store has begun, and what is on the device under its name is not the whole.
    bool _hasLeftPart = false;
};

} // namespace cvtamber
