// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/QtBluetoothLink.h"

#include "platform/bluetooth/Advertisement.h"

#include <QPointer>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

QString textOf(QLowEnergyController::Error error)
{
    switch (error) {
    case QLowEnergyController::NoError:
    case QLowEnergyController::ConnectionError:
    case QLowEnergyController::RemoteHostClosedError:
        return u"The link to the device was lost."_s;
    case QLowEnergyController::UnknownRemoteDeviceError:
        return u"Bluetooth does not know the device any more; look for it again."_s;
    case QLowEnergyController::InvalidBluetoothAdapterError:
        return u"The Bluetooth adapter is gone."_s;
    case QLowEnergyController::AuthorizationError:
    case QLowEnergyController::MissingPermissionsError:
        return u"The connection was not permitted."_s;
    default:
        return u"The device could not be connected."_s;
    }
}

} // namespace

QtBluetoothLink::QtBluetoothLink(RunLoop &runLoop, SharedLinks &sharedLinks,
                                 const QBluetoothDeviceInfo &device, const Events &events)
    : _runLoop(runLoop)
    , _sharedLinks(sharedLinks)
    , _device(device)
    , _identifier(identifierOf(device))
    , _events(events)
    , _calls(runLoop)
{}

QtBluetoothLink::~QtBluetoothLink()
{
    _gatt.reset();
    if (!_controller)
        return;
    QObject::disconnect(_controller, nullptr, &_context, nullptr);
    _sharedLinks.release(_identifier, _controller);
}

void QtBluetoothLink::open()
{
    if (!_sharedLinks.isClosing(_identifier)) {
        connectToDevice();
        return;
    }
    _sharedLinks.whenClosed(_identifier, [this, context = QPointer(&_context)] {
        if (context)
            post([this] { open(); });
    });
}

void QtBluetoothLink::connectToDevice()
{
    _sharedLinks.use(_identifier);
    _controller = QLowEnergyController::createCentral(_device);
    const auto connect = [this](auto signal, auto handler) {
        QObject::connect(_controller, signal, &_context, handler);
    };
    connect(&QLowEnergyController::connected, [this] { post([this] { opened(); }); });
    connect(&QLowEnergyController::stateChanged, [this](QLowEnergyController::ControllerState state) {
        _wasConnecting |= state == QLowEnergyController::ConnectingState;
        if (state == QLowEnergyController::UnconnectedState)
            post([this] { checkEnded(); });
    });
    // Some errors leave the controller as unconnected as it was, without a change of state.
    connect(&QLowEnergyController::errorOccurred, [this](QLowEnergyController::Error error) {
        _error = error;
        post([this] { checkEnded(); });
    });
    _controller->connectToDevice();
}

void QtBluetoothLink::opened()
{
    _isOpen = true;
    _error = QLowEnergyController::NoError;
    _gatt = std::make_unique<GattQueue>(_runLoop, *_controller, _events.notified);
    const auto tell = _events.opened;
    tell();
}

void QtBluetoothLink::checkEnded()
{
    if (_controller->state() != QLowEnergyController::UnconnectedState)
        return;
    const bool wasMade = _isOpen || (_wasConnecting && _error == QLowEnergyController::ConnectionError);
    const auto tell = _events.ended;
    tell(wasMade ? End::Lost : End::Refused, textOf(_error));
}

} // namespace cvtamber
