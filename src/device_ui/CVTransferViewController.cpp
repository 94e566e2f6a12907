// SPDX-License-Identifier: GPL-3.0-or-later
#include "device_ui/CVTransferViewController.h"

#include "app/AppContext.h"
#include "base/VisibleText.h"
#include "device/CVBTDevice.h"
#include "device/Reconnector.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

namespace {

using namespace std::chrono_literals;

// Where a reader is told how far it is; the end is told in words.
constexpr int announcedSteps = 4;

// As long as the device object waits for a confirmation.
constexpr auto stallTime = 6s;

} // namespace

std::shared_ptr<CVTransferViewController>
CVTransferViewController::withInputTextAndOutputFilename(AppContext &context, const QString &text,
                                                         const QString &fileName)
{
    auto screen = std::make_shared<CVTransferViewController>(context);
    screen->_inputText = text;
    screen->_outputFilename = fileName;
    return screen;
}

std::shared_ptr<CVTransferViewController>
CVTransferViewController::withInputDataAndOutputFilename(AppContext &context, const QByteArray &data,
                                                         const QString &fileName)
{
    auto screen = std::make_shared<CVTransferViewController>(context);
    screen->_inputData = data;
    screen->_outputFilename = fileName;
    return screen;
}

std::shared_ptr<CVTransferViewController>
CVTransferViewController::withCorvaneFileToDownload(AppContext &context, const QString &fileName)
{
    auto screen = std::make_shared<CVTransferViewController>(context);
    screen->_fileToDownload = fileName;
    return screen;
}

std::shared_ptr<CVTransferViewController>
CVTransferViewController::withInputTextAndCaption(AppContext &context, const QString &text,
                                                  const QString &caption)
{
    auto screen = std::make_shared<CVTransferViewController>(context);
    screen->_inputText = text;
    screen->_caption = caption;
    return screen;
}

CVTransferViewController::CVTransferViewController(AppContext &context)
    : ViewController(context.presenter)
    , _context(context)
    , _stallWatch(context.runLoop)
{
    _context.device.addLinkObserver(*this);
}

CVTransferViewController::~CVTransferViewController()
{
    _context.device.removeLinkObserver(*this);
    _context.device.turn().forget(this);
}

std::shared_ptr<CVTransferViewController> CVTransferViewController::self()
{
    return std::static_pointer_cast<CVTransferViewController>(shared_from_this());
}

CVTransferViewController::Kind CVTransferViewController::kind() const
{
    if (!_fileToDownload.isNull())
        return Kind::Fetch;
    if (_inputText.isNull())
        return Kind::Nothing;
    return _outputFilename.isNull() ? Kind::Emboss : Kind::Store;
}

bool CVTransferViewController::isAllWritten() const
{
    return _context.device.queuedBytes() == 0 && _context.device.unconfirmedWrites() == 0;
}

// Texts

void CVTransferViewController::makeLabelText()
{
    if (!_caption.isNull())
        _labelText = _caption;
    else if (kind() == Kind::Store)
        _labelText = localizedFormat("3.1", visibleText(_outputFilename));
    else if (kind() == Kind::Fetch)
        _labelText = localizedFormat("3.2", visibleText(_fileToDownload));
}

QString CVTransferViewController::okTitle() const
{
    return localized("OK");
}

QString CVTransferViewController::cancelTitle() const
{
    return localized("Cancel");
}

QString CVTransferViewController::statusText() const
{
    if (isBusy())
        return localized("Please wait…");
    if (!isFinished())
        return _step == Step::Failed && _context.reconnector.isAway() ? localized("Trying to connect again.")
                                                                      : QString();
    switch (kind()) {
    case Kind::Fetch:
        return mayBeIncomplete() ? localized("The file has been fetched. It may be incomplete.")
                                 : localized("The file has been fetched.");
    case Kind::Store:
        return localized("The file has been sent.");
    case Kind::Emboss:
        return localized("The text has been sent to the embosser.");
    case Kind::Nothing:
        break;
    }
    return {};
}

QString CVTransferViewController::problemText() const
{
    if (_isStalled)
        return localized("The Corvane does not answer. You can wait, or choose Cancel.");
    return _problem ? localized(_problem) : QString();
}

const char *CVTransferViewController::obstacle() const
{
    const DeviceTurn &turn = _context.device.turn();
    if (!turn.isLinked())
        return "The Corvane is not connected.";
    // An answer that is still on its way would become part of the next one.
    return turn.isFree() ? nullptr : "The Corvane is still busy. Try again in half a minute.";
}

const char *CVTransferViewController::lossProblem() const
{
    switch (kind()) {
    case Kind::Store:
        return "The connection to the Corvane was lost. The file on it is incomplete.";
    case Kind::Emboss:
        return "The connection to the Corvane was lost. Part of the text may be missing.";
    case Kind::Fetch:
    case Kind::Nothing:
        break;
    }
    return "The connection to the Corvane was lost. The file has not been fetched.";
}

const char *CVTransferViewController::cancelProblem() const
{
    return kind() == Kind::Store ? "You have cancelled. The file on the Corvane is incomplete."
                                 : "You have cancelled. The rest of the text does not come onto the paper.";
}

bool CVTransferViewController::hasFetchedNothing() const
{
    // An end alone is all that comes of a name that the device does not know, as its own codes may have changed it.
    const bool mayBeEmpty = _outcome.listedSize == 0 || (_outcome.listedSize < 0 && !_outcome.endedBySilence);
    return _outcome.receivedBytes == 0 && !mayBeEmpty;
}

bool CVTransferViewController::mayBeIncomplete() const
{
    // Translation changes the length, so nothing is known of a translated text.
    const bool isKnown = !_isTranslated.value_or(false) && _outcome.listedSize >= 0;
    return _outcome.endedBySilence && !(isKnown && _outcome.receivedBytes >= _outcome.listedSize);
}

QString CVTransferViewController::nameToKeep() const
{
    return mayBeIncomplete() ? localizedFormat("%@ (incomplete)", _fileToDownload) : _fileToDownload;
}

// Life

void CVTransferViewController::viewDidLoad()
{
    _context.device.setCvUploadDelegate(self());
    _context.device.setCvDownloadDelegate(self());
    makeLabelText();
}

void CVTransferViewController::viewDidAppear()
{
    if (_step != Step::Idle)
        return;
    if (kind() == Kind::Nothing)
        setStep(Step::Ended);
    else if (const char *problem = obstacle())
        fail(problem);
    else if (!_inputText.isNull())
        askForForwardTranslation();
    else
        askForBackTranslation();
}

void CVTransferViewController::viewDidDisappear()
{
    if (!hasGone())
        return;
    if (_step == Step::Running)
        setStep(Step::Failed);
    CVBTDevice &device = _context.device;
    if (device.cvUploadDelegate().get() == this)
        device.setCvUploadDelegate(nullptr);
    if (device.cvDownloadDelegate().get() == this)
        device.setCvDownloadDelegate(nullptr);
}

void CVTransferViewController::setStep(Step step)
{
    _stallWatch.cancel();
    // A link that stalled before this transfer is not told again.
    if (step == Step::Running)
        _stallWatch.start(stallTime, [this] { linkStalled(); });
    _step = step;
    _isStalled = false;
    emit changed();
}

// The question

void CVTransferViewController::askForBackTranslation()
{
    ask("3.3", {localized("3.4"), localized("3.5")});
}

void CVTransferViewController::askForForwardTranslation()
{
    ask("3.6", {localized("3.7"), localized("3.8")});
}

void CVTransferViewController::ask(const char *title, const QStringList &buttons)
{
    setStep(Step::Asking);
    ActionSheet sheet;
    sheet.title = localized(title);
    sheet.buttons = buttons;
    sheet.buttons.append(localized("Cancel"));
    sheet.cancelButtonIndex = CancelButton;
    sheet.didDismiss = [this](const ActionSheet &, int button) { questionAnswered(button); };
    showActionSheet(std::move(sheet));
}

void CVTransferViewController::questionAnswered(int button)
{
    if (_step != Step::Asking)
        return;
    if (button == CancelButton) {
        setStep(Step::Failed);
        close();
        return;
    }
    _isTranslated = button == TranslateButton;
    if (const char *problem = obstacle())
        fail(problem);
    else
        startTransfer();
}

void CVTransferViewController::startTransfer()
{
    setStep(Step::Running);
    CVBTDevice &device = _context.device;
    const int forwardMode = *_isTranslated ? ForwardTranslation : PlainTransfer;
    switch (kind()) {
    case Kind::Fetch:
        device.getFile(_fileToDownload, *_isTranslated ? BackTranslation : PlainTransfer);
        break;
    case Kind::Store:
        _hasLeftPart = true;
        device.sendFileWithName(_outputFilename, _inputText, forwardMode);
        break;
    case Kind::Emboss:
        device.embossString(_inputText, forwardMode);
        break;
    case Kind::Nothing:
        break;
    }
    // Nobody confirms what was not written: an empty text to emboss, or a link that went unnoticed.
    if (!isSending() || !isAllWritten())
        return;
    if (_inputText.isEmpty())
        finish();
    else
        failByLoss();
}

// How it gets on

void CVTransferViewController::showProgress(float fraction)
{
    goesOn();
    const double shown = shownProgress(fraction);
    if (std::exchange(_progress, shown) != shown)
        emit progressChanged();
    const int quarters = static_cast<int>(shown * announcedSteps);
    if (quarters <= _announcedQuarters || quarters == announcedSteps)
        return;
    _announcedQuarters = quarters;
    presenter().announce(localizedFormat("%@ percent", QString::number(quarters * (100 / announcedSteps))));
}

void CVTransferViewController::goesOn()
{
    _stallWatch.cancel();
    if (std::exchange(_isStalled, false))
        emit changed();
}

void CVTransferViewController::cvUploadProgress(float fraction)
{
    if (isSending())
        showProgress(fraction);
}

void CVTransferViewController::cvDownloadProgress(float fraction)
{
    if (isFetching())
        showProgress(fraction);
}

void CVTransferViewController::cvUploadReplacedCharacters(qsizetype count)
{
    if (!isSending())
        return;
    presenter().showNotice(
        count == 1
            ? localized("1 character that the Corvane does not have was sent as \"?\" or without its accent.")
            : localizedFormat(
                  "%@ characters that the Corvane does not have were sent as \"?\" or without their accents.",
                  QString::number(count)));
}

void CVTransferViewController::linkStalled()
{
    if (_step != Step::Running || std::exchange(_isStalled, true))
        return;
    emit changed();
    presenter().announce(problemText());
}

// How it ends

void CVTransferViewController::cvFileUploaded()
{
    if (isSending() && isAllWritten())
        finishSending();
}

void CVTransferViewController::linkWritesConfirmed()
{
    goesOn();
    if (isSending())
        finishSending();
    else
        emit changed();
}

void CVTransferViewController::finishSending()
{
    if (_hasFailedWrite)
        fail("Part of it did not reach the Corvane. Send it again.");
    else
        finish();
}

void CVTransferViewController::cvFileUploadFailed(const QString &)
{
    if (isSending())
        failByLoss();
}

void CVTransferViewController::cvFileDownloadOutcome(const FetchOutcome &outcome)
{
    if (isFetching())
        _outcome = outcome;
}

void CVTransferViewController::cvFileDownloaded(const QString &text)
{
    if (!isFetching())
        return;
    if (hasFetchedNothing()) {
        fail("The Corvane sent nothing. The file has not been fetched.");
        return;
    }
    _downloadedString = text.isNull() ? QString(QLatin1String("")) : text;
    tellDoubts();
    finish();
}

void CVTransferViewController::tellDoubts() const
{
    if (_outcome.endedBySilence)
        presenter().showNotice(
            localized("The Corvane did not say that the file was complete. Its end may be missing."));
    if (_outcome.undefinedBytes > 0)
        presenter().showNotice(
            localized("Some characters of the file are unknown. A mark stands in place of each."));
}

void CVTransferViewController::cvFileDownloadFailed(const QString &)
{
    if (isFetching())
        failByLoss();
}

void CVTransferViewController::linkLost(const QString &)
{
    if (_step == Step::Running)
        failByLoss();
    emit changed();
}

// The transfer is offered again.
void CVTransferViewController::linkConnected()
{
    _hasToldLoss = false;
    emit changed();
}

void CVTransferViewController::finish()
{
    const auto self = this->self();
    _hasLeftPart = false;
    showProgress(1.0F);
    setStep(Step::Ended);
    presenter().announce(statusText());
    if (const auto delegate = _delegate.lock())
        delegate->cvTransferControllerTransferFinished(*this);
}

void CVTransferViewController::fail(const char *problem)
{
    const auto self = this->self();
    _problem = problem;
    setStep(Step::Failed);
    presenter().announce(problemText());
    // A device that is busy now can be asked again when it is not.
    _context.device.turn().whenFree(this, [this](DeviceTurn::End) { emit changed(); });
}

void CVTransferViewController::failByLoss()
{
    _hasToldLoss = true;
    fail(lossProblem());
}

// The whole again

bool CVTransferViewController::isAgainVisible() const
{
    // What a cancelled store still owes the device goes before.
    return _step == Step::Failed && kind() != Kind::Nothing && !obstacle() && isAllWritten();
}

QString CVTransferViewController::againTitle() const
{
    if (kind() == Kind::Fetch)
        return localized("Fetch again");
    return kind() == Kind::Store ? localized("Send again") : localized("Emboss again");
}

bool CVTransferViewController::isDeleteVisible() const
{
    return isAgainVisible() && hasLeftFile();
}

QString CVTransferViewController::deleteTitle() const
{
    return localized("Delete the incomplete file");
}

// The name was free before: what is listed under it is what the store has left.
bool CVTransferViewController::hasLeftFile() const
{
    return _hasLeftPart && _context.device.getSizeOfFileWithName(_outputFilename) >= 0;
}

void CVTransferViewController::againClicked()
{
    if (!isAgainVisible() || !takesActions())
        return;
    if (hasLeftFile())
        _context.device.deleteFile(_outputFilename);
    _problem = nullptr;
    _hasFailedWrite = false;
    _announcedQuarters = 0;
    _progress = 0;
    emit progressChanged();
    if (_isTranslated)
        startTransfer();
    else if (kind() == Kind::Fetch)
        askForBackTranslation();
    else
        askForForwardTranslation();
}

void CVTransferViewController::deleteClicked()
{
    if (!isDeleteVisible() || !takesActions())
        return;
    _context.device.deleteFile(_outputFilename);
    _hasLeftPart = false;
    _problem = "The incomplete file has been deleted from the Corvane.";
    emit changed();
    presenter().announce(problemText());
}

void CVTransferViewController::okClicked()
{
    if (isOkVisible())
        close();
}

void CVTransferViewController::cancelClicked()
{
    if (!isCancelVisible() || !takesActions())
        return;
    if (kind() != Kind::Fetch && _context.device.cancelUpload()) {
        fail(cancelProblem());
        return;
    }
    presenter().showNotice(
        kind() == Kind::Fetch
            ? localized("The Corvane goes on sending the file. It is busy until it has finished, or has said "
                        "nothing for half a minute.")
            : localized("All of the text had been sent already. The Corvane has not confirmed it yet."));
    setStep(Step::Failed);
    close();
}

void CVTransferViewController::close()
{
    if (!takesActions())
        return;
    const auto self = this->self();
    if (const auto delegate = _delegate.lock())
        delegate->cvTransferCloseClicked();
    // Not every presenting screen listens to that.
    if (takesActions())
        dismissViewController(true);
}

} // namespace cvtamber
