// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/CVBTDevice.h"

#include "device/CVBTDeviceRooms.h"
#include "text/DeviceTables.h"

#include <QDateTime>

#include <utility>

namespace cvtamber {

std::shared_ptr<CVBTDevice> gCVDevice;

CVBTDevice::CVBTDevice(const CVBTDeviceServices &services)
    : _rooms(std::make_unique<Rooms>(*this, services))
{
    services.log.info(
        QStringLiteral("Date - %1").arg(QDateTime::currentDateTime().toString(Qt::ISODateWithMs)));
    services.log.info(QStringLiteral("Thread: main"));
    services.log.info(QStringLiteral("CVBTDevice:init"));
}

CVBTDevice::~CVBTDevice() = default;

// Delegates.

std::shared_ptr<CVDeviceStateDelegate> CVBTDevice::cvStateDelegate() const
{
    return _rooms->context.stateDelegate;
}

void CVBTDevice::setCvStateDelegate(const std::shared_ptr<CVDeviceStateDelegate> &delegate)
{
    _rooms->context.stateDelegate = delegate;
}

std::shared_ptr<CVDownloadFileDelegate> CVBTDevice::cvDownloadDelegate() const
{
    return _rooms->context.downloadDelegate;
}

void CVBTDevice::setCvDownloadDelegate(const std::shared_ptr<CVDownloadFileDelegate> &delegate)
{
    _rooms->context.downloadDelegate = delegate;
}

std::shared_ptr<CVUploadFileDelegate> CVBTDevice::cvUploadDelegate() const
{
    return _rooms->context.uploadDelegate;
}

void CVBTDevice::setCvUploadDelegate(const std::shared_ptr<CVUploadFileDelegate> &delegate)
{
    _rooms->context.uploadDelegate = delegate;
}

std::shared_ptr<CVBTDeviceDelegate> CVBTDevice::delegate() const
{
    return _rooms->context.deviceDelegate;
}

void CVBTDevice::setDelegate(const std::shared_ptr<CVBTDeviceDelegate> &delegate)
{
    _rooms->context.deviceDelegate = delegate;
}

void CVBTDevice::setDataDelegate(const std::shared_ptr<CVDataDelegate> &delegate)
{
    _rooms->context.dataDelegate = delegate;
}

void CVBTDevice::addLinkObserver(LinkObserver &observer)
{
    _rooms->context.observers.add(observer);
}

void CVBTDevice::removeLinkObserver(LinkObserver &observer)
{
    _rooms->context.observers.remove(observer);
}

// Connecting and disconnecting.

void CVBTDevice::connectAsCVCommWithPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _rooms->session.connectAsCVCommWithPeripheral(peripheral);
}

void CVBTDevice::connectAsCVComm()
{
    _rooms->session.connectAsCVComm(_rooms->connectionReceiver);
}

void CVBTDevice::connectPC()
{
    _rooms->session.connectPC();
}

void CVBTDevice::disconnectAsCVComm()
{
    _rooms->session.disconnectAsCVComm();
}

void CVBTDevice::disconnectPeripheral()
{
    _rooms->link->disconnectPeripheral();
}

BluetoothPeripheralPtr CVBTDevice::peripheral() const
{
    return _rooms->link->peripheral();
}

void CVBTDevice::startDiscoverInfoForPeripheral(const BluetoothPeripheralPtr &peripheral)
{
    _rooms->link->startDiscoverInfoForPeripheral(peripheral);
}

void CVBTDevice::setCvBtInfoCharacteristic(const std::weak_ptr<BluetoothCharacteristic> &characteristic)
{
    _rooms->link->setInfoCharacteristic(characteristic);
}

void CVBTDevice::cableConnected()
{
    // A cable takes the place of the radio link, so the connected state ends here too.
    _rooms->context.isConnectedAsCVComm = false;
}

void CVBTDevice::cableDisconnected()
{
    _rooms->context.isConnectedAsCVComm = false;
    _rooms->context.log.info(QStringLiteral("cableDisconnected"));
}

// Identity and state.

bool CVBTDevice::isConnectedAsCVComm() const
{
    return _rooms->context.isConnectedAsCVComm;
}

void CVBTDevice::setIsConnectedAsCVComm(bool connected)
{
    _rooms->context.isConnectedAsCVComm = connected;
}

int CVBTDevice::connectionType() const
{
    return _rooms->context.connectionType;
}

int CVBTDevice::cvModel() const
{
    return _rooms->identity.cvModel();
}

void CVBTDevice::setCvModel(int model)
{
    _rooms->identity.setCvModel(model);
}

QString CVBTDevice::cvFirmwareVersion() const
{
    return _rooms->identity.cvFirmwareVersion();
}

void CVBTDevice::setCvFirmwareVersion(const QString &version)
{
    _rooms->identity.setCvFirmwareVersion(version);
}

QString CVBTDevice::cvSerialNumber() const
{
    return _rooms->identity.cvSerialNumber();
}

int CVBTDevice::cvLanguage() const
{
    return _rooms->identity.cvLanguage();
}

int CVBTDevice::cvKeyboardLanguage() const
{
    return _rooms->identity.cvKeyboardLanguage();
}

char16_t CVBTDevice::cvLanguageSet() const
{
    return _rooms->identity.cvLanguageSet();
}

int CVBTDevice::cvBrailleCode() const
{
    return _rooms->identity.cvBrailleCode();
}

DeviceStateRecord CVBTDevice::cvDeviceStateData() const
{
    return _rooms->identity.record();
}

bool CVBTDevice::advancedModeOn() const
{
    return _rooms->context.advancedModeOn;
}

bool CVBTDevice::embosserOn() const
{
    return _rooms->context.embosserOn;
}

StringEncoding CVBTDevice::stringEncoding() const
{
    return _rooms->context.stringEncoding;
}

void CVBTDevice::setStringEncoding(StringEncoding encoding)
{
    _rooms->context.stringEncoding = encoding;
}

int CVBTDevice::forwardGrade() const
{
    return _rooms->identity.record()[DeviceStateRecord::ForwardGrade];
}

void CVBTDevice::setForwardGrade(int grade)
{
    _rooms->identity.setForwardGrade(grade);
}

int CVBTDevice::backwardGrade() const
{
    return _rooms->identity.record()[DeviceStateRecord::BackwardGrade];
}

void CVBTDevice::setBackwardGrade(int grade)
{
    _rooms->identity.setBackwardGrade(grade);
}

int CVBTDevice::languageFromSet(char16_t set, unsigned dipSwitch)
{
    return languageFromSetAndDipSwitch(set, dipSwitch);
}

// Text and the command engine.

QByteArray CVBTDevice::cvOutDataFromString(const QString &text, int language, qsizetype *replaced)
{
    EncodedText encoded = TextCodec::encode(text, language);
    if (replaced)
        *replaced = encoded.replaced;
    return std::move(encoded.bytes);
}

QString CVBTDevice::stringFromCvData(const QByteArray &data, int language)
{
    DecodedText decoded = TextCodec::decode(data, language);
    return decoded.undefined > 0 ? QString() : std::move(decoded.text);
}

void CVBTDevice::sendCommand(const QString &command)
{
    _rooms->engine.sendCommand(command);
}

void CVBTDevice::sendWaitCommand(int number)
{
    _rooms->engine.sendWaitCommand(number);
}

void CVBTDevice::sendWaitCommand(int number, const QString &parameters)
{
    _rooms->engine.sendWaitCommand(number, parameters);
}

void CVBTDevice::sendFinalWaitCommand(const QString &command)
{
    _rooms->engine.sendFinalWaitCommand(command);
}

bool CVBTDevice::sendString(const QString &text, qsizetype *replaced)
{
    return sendStringForLanguage(text, cvKeyboardLanguage(), replaced);
}

bool CVBTDevice::sendStringForLanguage(const QString &text, int language, qsizetype *replaced)
{
    return _rooms->sender.sendString(text, language, replaced);
}

bool CVBTDevice::sendData(const QByteArray &data)
{
    return _rooms->sender.sendData(data);
}

bool CVBTDevice::internalSendString(const QString &text)
{
    const EncodedText encoded = TextCodec::encodeRaw(text, _rooms->context.stringEncoding);
    if (encoded.replaced == 0)
        _rooms->sender.internalSendData(encoded.bytes);
    return false;
}

bool CVBTDevice::internalSendData(const QByteArray &data)
{
    _rooms->sender.internalSendData(data);
    return false;
}

void CVBTDevice::handleCommandData(const QByteArray &data)
{
    _rooms->engine.handleCommandData(data);
}

void CVBTDevice::startCommanndTimer()
{
    _rooms->engine.startCommanndTimer();
}

void CVBTDevice::stopCommandTimer()
{
    _rooms->engine.stopCommandTimer();
}

QString CVBTDevice::portName() const
{
    return _rooms->context.portName();
}

int CVBTDevice::pendingCommand() const
{
    return _rooms->engine.pendingCommand();
}

DeviceTurn &CVBTDevice::turn()
{
    return _rooms->turn;
}

const DeviceTurn &CVBTDevice::turn() const
{
    return _rooms->turn;
}

qsizetype CVBTDevice::queuedBytes() const
{
    return _rooms->sender.queuedBytes();
}

qsizetype CVBTDevice::unconfirmedWrites() const
{
    return _rooms->sender.unconfirmedWrites();
}

// Files on the device, and sound.

QList<CVFileData> CVBTDevice::files() const
{
    return _rooms->files.files();
}

void CVBTDevice::setFiles(const QList<CVFileData> &files)
{
    _rooms->files.setFiles(files);
}

void CVBTDevice::refreshFilesWithCompletionHandler(const std::function<void()> &handler)
{
    _rooms->files.refreshFilesWithCompletionHandler(handler);
}

int CVBTDevice::getFilesCount() const
{
    return static_cast<int>(_rooms->files.files().size());
}

QString CVBTDevice::getFileName(int index) const
{
    const auto &files = _rooms->files.files();
    return index >= 0 && index < files.size() ? files[index].name() : QString();
}

qint64 CVBTDevice::getFileSize(int index) const
{
    const auto &files = _rooms->files.files();
    return index >= 0 && index < files.size() ? static_cast<qint64>(files[index].size()) : -1;
}

qint64 CVBTDevice::getSizeOfFileWithName(const QString &name) const
{
    return _rooms->files.getSizeOfFileWithName(name);
}

bool CVBTDevice::fileExists(const QString &name) const
{
    return _rooms->files.fileExists(name);
}

void CVBTDevice::getFile(const QString &name, int useTranslation)
{
    _rooms->files.getFile(name, useTranslation);
}

void CVBTDevice::sendFileWithName(const QString &name, const QString &text, int useTranslation)
{
    _rooms->files.sendFileWithName(name, text, useTranslation);
}

void CVBTDevice::embossString(const QString &text, int useTranslation)
{
    _rooms->files.embossString(text, useTranslation);
}

bool CVBTDevice::cancelUpload()
{
    return _rooms->files.cancelUpload();
}

void CVBTDevice::deleteFile(const QString &name)
{
    _rooms->files.deleteFile(name);
}

bool CVBTDevice::uploadSoundData(const QByteArray &data)
{
    return _rooms->sound.uploadSoundData(data);
}

// Other transports.

std::shared_ptr<CVConnectionProtocol> CVBTDevice::connection() const
{
    return _rooms->context.connection;
}

void CVBTDevice::setConnection(const std::shared_ptr<CVConnectionProtocol> &connection)
{
    _rooms->context.connection = connection;
}

void CVBTDevice::serialPortWasOpened(const std::shared_ptr<CVSerialPort> &port)
{
    _rooms->context.serialPort = port;
    _rooms->session.connectPC();
}

void CVBTDevice::serialPortDidReceiveData(const QByteArray &data)
{
    _rooms->session.receive(data, _rooms->identity.cvLanguage());
}

void CVBTDevice::serialPortDidWriteData()
{
    _rooms->sender.setWaitingForDataSent(false);
    _rooms->session.linkDidWrite({});
}

} // namespace cvtamber
