// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/CVBTDeviceRooms.h"

namespace cvtamber {

CVBTDevice::Rooms::Rooms(CVBTDevice &device, const CVBTDeviceServices &services)
    : context(device, services.runLoop, services.log, services.idleTimer)
    , sender(context, [this](const QByteArray &data) { return write(data); })
    , engine(context, sender, *this, [this] { return identity.cvKeyboardLanguage(); })
    , turn(context, engine)
    , identity(context, engine,
               {[this] { files.refreshFilesWithCompletionHandler(nullptr); },
                [this] { files.restoreAfterLoss(); }, [this] { session.identified(); }})
    , files(context, engine, sender, identity,
            {[this] { session.identified(); }, [this] { return link->hasPeripheral(); }})
    , sound(engine, sender)
    , session(context, {engine, turn, sender, identity, files, sound})
    , link(std::make_shared<BluetoothLink>(context, session, services.bluetoothManager))
    , connectionReceiver(std::make_shared<ConnectionReceiver>(session))
{
    session.setLink(link, services.makeCentral);
}

bool CVBTDevice::Rooms::write(const QByteArray &data)
{
    if (context.serialPort)
        context.serialPort->sendData(data);
    else if (context.connection)
        context.connection->sendData(data);
    else
        return link->write(data);
    return true;
}

} // namespace cvtamber
