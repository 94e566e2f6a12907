// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DeviceRig.h"

#include "device/BluetoothIdentifiers.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

DeviceRig::DeviceRig()
    : peripheral(std::make_shared<FakePeripheral>(u"A"_s, u"Corvane"_s, journal))
{
    auto owned = std::make_unique<FakeCentral>(journal);
    central = owned.get();
    manager = CVBluetoothManager::create(loop, log, std::move(owned));
    central->setState(BluetoothCentral::State::PoweredOn);
    const auto makeCentral = [this] {
        auto made = std::make_unique<FakeCentral>(journal);
        ownCentral = made.get();
        return made;
    };
    device = std::make_unique<CVBTDevice>(CVBTDeviceServices{loop, log, idleTimer, manager, makeCentral});
    device->setCvStateDelegate(told);
    device->setCvUploadDelegate(told);
    device->setDataDelegate(told);
    device->setDelegate(told);
    device->addLinkObserver(observer);
}

DeviceRig::~DeviceRig()
{
    told->react = nullptr;
    observer.react = nullptr;
    device.reset(); // before the observer it reports to
}

void DeviceRig::openLink()
{
    device->connectAsCVCommWithPeripheral(peripheral);
    central->connected(peripheral);
    peripheral->foundServices({BluetoothIdentifiers::deviceService()});
    peripheral->foundCharacteristics(BluetoothIdentifiers::deviceService(),
                                     {BluetoothIdentifiers::dataCharacteristic()});
    peripheral->notificationState();
    loop.advance(100ms);
}

void DeviceRig::linkWithCode(int code)
{
    openLink();
    drain();
    reply(QByteArray("{PC") + static_cast<char>(code) + '}');
}

void DeviceRig::identify(const QByteArray &pcr, const QByteArray &version, const QByteArray &listing)
{
    linkWithCode(1);
    for (const auto &answer : {pcr, version, listing}) {
        drain();
        reply(answer);
    }
    drain();
    told->take();
    observer.take();
}

void DeviceRig::reply(const QByteArray &bytes)
{
    notifyInPieces(bytes);
    loop.advance(2s);
}

void DeviceRig::notifyInPieces(const QByteArray &bytes, qsizetype pieceSize)
{
    for (qsizetype at = 0; at < bytes.size(); at += pieceSize)
        peripheral->notify(bytes.mid(at, pieceSize));
}

QByteArray DeviceRig::sent()
{
    QByteArray bytes;
    for (; _taken < peripheral->writes().size(); ++_taken)
        bytes += peripheral->writes().at(_taken);
    return bytes;
}

QByteArray DeviceRig::drain()
{
    while (peripheral->unconfirmed() > 0)
        peripheral->confirmWrite();
    return sent();
}

void DeviceRig::loseLink()
{
    central->disconnected(peripheral, BluetoothError{u"the device is out of reach"_s});
}

QByteArray DeviceRig::pcrReply(const QList<std::pair<int, QByteArray>> &fields)
{
    QList<QByteArray> pieces(DeviceStateRecord::FieldCount, "0");
    pieces[DeviceStateRecord::EmbosserOutput] = "1";
    for (const auto &[index, text] : fields)
        pieces[index] = text;
    return pieces.join(", ");
}

} // namespace cvtamber
