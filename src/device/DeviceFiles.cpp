// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/DeviceFiles.h"

#include "device/CommandEngine.h"
#include "device/CommandSender.h"
#include "device/DeviceIdentity.h"
#include "device/FileListing.h"
#include "device/TranslationMode.h"

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

constexpr qsizetype trailerSize = 5;
// What the commands around a short store amount to, for its progress.
constexpr qint64 storeOverhead = 26;

} // namespace

DeviceFiles::DeviceFiles(DeviceContext &context, CommandEngine &engine, CommandSender &sender,
                         DeviceIdentity &identity, Hooks hooks)
    : _context(context)
    , _engine(engine)
    , _sender(sender)
    , _identity(identity)
    , _hooks(std::move(hooks))
{}

void DeviceFiles::refreshFilesWithCompletionHandler(const std::function<void()> &handler)
{
    _dirCommandHandler = handler;
    _engine.sendWaitCommand(CommandEngine::DirectoryCommand);
}

void DeviceFiles::handle_cmdDIR_result(const QByteArray &reply)
{
    _cvFiles = filesFromListing(TextCodec::decodeRaw(reply, _context.stringEncoding).text,
                                _identity.cvKeyboardLanguage());
    _hooks.identified();
    if (const auto handler = std::exchange(_dirCommandHandler, nullptr))
        handler();
}

qint64 DeviceFiles::getSizeOfFileWithName(const QString &name) const
{
    const auto found = std::find_if(_cvFiles.begin(), _cvFiles.end(),
                                    [&name](const CVFileData &file) { return file.name() == name; });
    return found == _cvFiles.end() ? -1 : static_cast<qint64>(found->size());
}

bool DeviceFiles::fileExists(const QString &name) const
{
    const QString searched = name.normalized(QString::NormalizationForm_C);
    return std::any_of(_cvFiles.begin(), _cvFiles.end(), [&searched](const CVFileData &file) {
        return searched.compare(file.name().normalized(QString::NormalizationForm_C), Qt::CaseInsensitive) ==
               0;
    });
}

void DeviceFiles::turnOffEmbosser()
{
    _engine.sendCommand(QStringLiteral("EM OFF"));
    _switched.embosserOff = _switched.embosserOff || _context.embosserOn;
}

void DeviceFiles::turnOnAdvancedMode()
{
    if (_context.advancedModeOn)
        return;
    _engine.sendCommand(QStringLiteral("ADV"));
    _context.restoreAdvancedMode = true;
    _switched.advanced = true;
}

void DeviceFiles::toggleBackTranslation()
{
    if (_context.serialPort)
        _engine.sendCommand(QStringLiteral("BUSB"));
    else if (_hooks.hasPeripheral())
        _engine.sendCommand(QStringLiteral("BS2"));
}

void DeviceFiles::getFile(const QString &name, int useTranslation)
{
    // What it owes is to come before this one's own switching.
    _engine.pushAside();
    _downloadFileSize = getSizeOfFileWithName(name);
    turnOffEmbosser();
    _engine.sendCommand(_context.portName() + QStringLiteral(" ON"));
    if (useTranslation != PlainTransfer)
        turnOnAdvancedMode();
    if (useTranslation == BackTranslation) {
        const bool usb = _context.serialPort != nullptr;
        const auto field =
            usb ? DeviceStateRecord::BackTranslationOnUsb : DeviceStateRecord::BackTranslationOnS2;
        if (_identity.record()[field] == 0) {
            // The port is turned on a second time here; the device expects it before the toggle.
            _engine.sendCommand(usb ? QStringLiteral("USB ON") : QStringLiteral("S2 ON"));
            _engine.sendCommand(usb ? QStringLiteral("BUSB") : QStringLiteral("BS2"));
            _context.restoreBackwardTranslation = true;
            _switched.backTranslation = true;
        }
    }
    _engine.sendWaitCommand(CommandEngine::FetchCommand, name);
}

void DeviceFiles::downloadProgressOnThread(qsizetype receivedBytes)
{
    if (const auto delegate = _context.downloadDelegate)
        delegate->cvDownloadProgress(static_cast<float>(receivedBytes) /
                                     static_cast<float>(_downloadFileSize));
}

void DeviceFiles::handle_cmdPR_result(QByteArray reply, bool endedBySilence)
{
    restoreAfterFetch();
    dataDownloadedInThread(std::move(reply), endedBySilence);
    turnEmbosserOnAgain();
}

void DeviceFiles::fetchPushedAside()
{
    restoreAfterFetch();
    turnEmbosserOnAgain();
    if (const auto delegate = _context.downloadDelegate)
        delegate->cvFileDownloadFailed(QStringLiteral("the device was asked for something else"));
}

void DeviceFiles::turnEmbosserOnAgain()
{
    if (_context.embosserOn)
        _engine.sendCommand(QStringLiteral("EM ON"));
}

void DeviceFiles::restoreAfterFetch()
{
    if (std::exchange(_context.restoreBackwardTranslation, false))
        toggleBackTranslation();
    if (std::exchange(_context.restoreAdvancedMode, false))
        _engine.sendCommand(QStringLiteral("ADV"));
}

bool DeviceFiles::abandonTransfer(bool isFetching)
{
    // The commands that close a store and switch back stand behind its text already.
    const bool wasUploading = _sender.abandonUpload();
    if (isFetching) {
        restoreAfterFetch();
        turnEmbosserOnAgain();
    }
    return wasUploading;
}

bool DeviceFiles::cancelUpload()
{
    const qint64 queued = _sender.queuedBytes();
    abandonTransfer(false);
    const qint64 dropped = queued - _sender.queuedBytes();
    for (CVFileData &file : _cvFiles) {
        if (!_storedName.isNull() && file.name() == _storedName)
            file.setSize(file.size() - std::min(file.size(), static_cast<quint64>(dropped)));
    }
    return dropped > 0;
}

void DeviceFiles::restoreAfterLoss()
{
    const SwitchedModes left = _leftSwitched.take(_identity.cvSerialNumber());
    const auto field = _context.serialPort ? DeviceStateRecord::BackTranslationOnUsb
                                           : DeviceStateRecord::BackTranslationOnS2;
    if (left.backTranslation && _identity.record()[field] != 0) {
        toggleBackTranslation();
        _identity.setRecordField(field, 0);
    }
    if (left.forwardTranslation &&
        _identity.record()[DeviceStateRecord::ForwardTranslationForEmbossing] != 0) {
        _engine.sendCommand(QStringLiteral("FE"));
        _identity.setRecordField(DeviceStateRecord::ForwardTranslationForEmbossing, 0);
    }
    if (left.advanced && std::exchange(_context.advancedModeOn, false)) {
        _engine.sendCommand(QStringLiteral("ADV"));
        _identity.setRecordField(DeviceStateRecord::AdvancedMode, 0);
    }
    if (left.embosserOff && !std::exchange(_context.embosserOn, true)) {
        _engine.sendCommand(QStringLiteral("EM ON"));
        _identity.setRecordField(DeviceStateRecord::EmbosserOutput, 1);
    }
    // Until the writes are confirmed, for a link that is lost again.
    _switched = left;
}

void DeviceFiles::dataDownloadedInThread(QByteArray reply, bool endedBySilence)
{
    const auto delegate = _context.downloadDelegate;
    if (!delegate)
        return;
    // Only the last byte is tested: a trailer damaged on its way is cut as well.
    if (reply.size() >= trailerSize && reply.endsWith('}'))
        reply.chop(trailerSize);
    const DecodedText decoded = TextCodec::decode(reply, _identity.cvLanguage());
    delegate->cvFileDownloadOutcome({endedBySilence, decoded.undefined, reply.size(), _downloadFileSize});
    delegate->cvFileDownloaded(decoded.text);
}

void DeviceFiles::sendText(const QString &text)
{
    qsizetype replaced = 0;
    _sender.sendText(text, _identity.cvKeyboardLanguage(), &replaced);
    const auto delegate = _context.uploadDelegate;
    if (delegate && replaced > 0)
        delegate->cvUploadReplacedCharacters(replaced);
}

void DeviceFiles::sendFileWithName(const QString &name, const QString &text, int useTranslation)
{
    turnOffEmbosser();
    _engine.sendCommand(QStringLiteral("S1 OFF"));
    const bool translated = useTranslation == ForwardTranslation;
    if (translated)
        turnOnAdvancedMode();
    _engine.sendCommand((translated ? QStringLiteral("FM ") : QStringLiteral("BEGIN ")) + name);
    sendText(text);
    _engine.sendCommand(translated ? QStringLiteral("FM END") : QStringLiteral("END"));
    _engine.sendCommand(QStringLiteral("S1 OFF"));
    _engine.sendCommand(QStringLiteral("EM ON"));
    const qint64 queued = _sender.queuedBytes();
    _sender.setUploadDataSize(queued > 0 ? queued : text.size() + storeOverhead);
    if (std::exchange(_context.restoreAdvancedMode, false))
        _engine.sendCommand(QStringLiteral("ADV"));
    _cvFiles.append(CVFileData(name, static_cast<quint64>(text.size())));
    _storedName = name;
}

void DeviceFiles::embossString(const QString &text, int useTranslation)
{
    bool toggleForwardTranslation = false;
    _storedName.clear();
    if (useTranslation == ForwardTranslation) {
        turnOnAdvancedMode();
        toggleForwardTranslation = _identity.record()[DeviceStateRecord::ForwardTranslationForEmbossing] == 0;
        if (toggleForwardTranslation) {
            _engine.sendCommand(QStringLiteral("FE"));
            _switched.forwardTranslation = true;
        }
    }
    sendText(text);
    const qint64 queued = _sender.queuedBytes();
    _sender.setUploadDataSize(queued > 0 ? queued : text.size());
    if (toggleForwardTranslation)
        _engine.sendCommand(QStringLiteral("FE"));
    // The flag stays set, so that a later emboss ends with the toggle as well; a fetch or a store clears it.
    if (_context.restoreAdvancedMode)
        _engine.sendCommand(QStringLiteral("ADV"));
}

void DeviceFiles::deleteFile(const QString &name)
{
    _engine.sendCommand(QStringLiteral("DEL ") + name);
    const auto found = std::find_if(_cvFiles.cbegin(), _cvFiles.cend(),
                                    [&name](const CVFileData &file) { return file.name() == name; });
    if (found != _cvFiles.cend())
        _cvFiles.erase(found);
}

void DeviceFiles::drop()
{
    const QString serial = _identity.cvSerialNumber();
    if (const SwitchedModes left = std::exchange(_switched, {}); left != SwitchedModes() && !serial.isEmpty())
        _leftSwitched.insert(serial, left);
    _dirCommandHandler = nullptr;
    _context.restoreAdvancedMode = false;
    _context.restoreBackwardTranslation = false;
    _context.restoreForwardTranslation = false;
}

} // namespace cvtamber
