// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/LiveMode.h"

#include "app/AppContext.h"
#include "device/CVBTDevice.h"
#include "device/Reconnector.h"
#include "ui/Presenter.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

LiveMode::LiveMode(AppContext &context, const QString &command, const Changed &changed)
    : _context(context)
    , _command(command)
    , _changed(changed)
{}

LiveMode::~LiveMode()
{
    _context.device.removeLinkObserver(*this);
}

void LiveMode::appear()
{
    _context.device.addLinkObserver(*this);
    _hasToldReplaced = false;
    _toldStatus.reset();
    enter();
}

void LiveMode::disappear()
{
    _context.device.removeLinkObserver(*this);
    _context.device.turn().forget(this);
    if (std::exchange(_step, Step::Out) == Step::In)
        _context.device.sendCommand(_command);
}

// An answer on its way would take what the device says of the mode for its own.
void LiveMode::enter()
{
    _step = Step::Busy;
    _context.device.turn().whenFree(this, [this](DeviceTurn::End end) { turnEnded(end); });
    tellStatus();
}

void LiveMode::turnEnded(DeviceTurn::End end)
{
    _step = end == DeviceTurn::End::Done ? Step::In : Step::Away;
    if (_step == Step::In)
        _context.device.sendCommand(_command);
    tellStatus();
}

void LiveMode::tellStatus()
{
    if (const QString status = statusText(); std::exchange(_toldStatus, status) != status)
        _changed();
}

QString LiveMode::statusText() const
{
    if (_step == Step::Busy)
        return localized("The Corvane is busy. One moment, please.");
    if (_step != Step::Away)
        return {};
    return _context.reconnector.isAway()
               ? localized("The connection to the Corvane was lost. Trying to connect again.")
               : localized("The Corvane is not connected.");
}

// The link itself ends 2 seconds after it was asked to.
void LiveMode::linkStateChanged(int state)
{
    if (state == CVDeviceStateDelegate::DisconnectedOrNotConnectable && _step != Step::Away)
        goAway();
}

void LiveMode::linkConnected()
{
    if (_step == Step::Away)
        enter();
}

void LiveMode::goAway()
{
    _step = Step::Away;
    if (std::exchange(_hasUnconfirmedText, false))
        _context.presenter.showNotice(localized(
            "The connection to the Corvane was lost. What was written last may not have reached it."));
    tellStatus();
}

void LiveMode::sendString(const QString &text)
{
    CVBTDevice &device = _context.device;
    qsizetype replaced = 0;
    device.sendString(text, &replaced);
    _hasUnconfirmedText = device.unconfirmedWrites() > 0;
    if (replaced > 0 && !std::exchange(_hasToldReplaced, true))
        _context.presenter.showNotice(localized(
            "Characters that the Corvane does not have are sent as \"?\" or without their accents."));
}

void LiveMode::tellObeyed() const
{
    _context.presenter.showNotice(
        localized("Not sent: the Corvane would take { or } for a command. Write ( and ) instead."));
}

void LiveMode::linkLost(const QString &)
{
    goAway();
}

void LiveMode::linkStalled()
{
    _context.presenter.showNotice(localized("The Corvane does not answer."));
}

void LiveMode::linkWriteFailed(const QString &)
{
    _context.presenter.showNotice(localized("What was written last may not have reached the Corvane."));
}

} // namespace cvtamber
