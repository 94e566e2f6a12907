// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/LiveMode.h"

#include "app/AppContext.h"
#include "device/CVBTDevice.h"
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
    enter();
    if (isAway())
        _changed();
}

void LiveMode::disappear()
{
    _context.device.removeLinkObserver(*this);
    if (std::exchange(_step, Step::Out) == Step::In)
        _context.device.sendCommand(_command);
}

void LiveMode::enter()
{
    _context.device.sendCommand(_command);
    // Without a link the bytes went nowhere.
    _step = _context.device.isConnectedAsCVComm() ? Step::In : Step::Away;
}

void LiveMode::linkConnected()
{
    if (_step != Step::Away)
        return;
    enter();
    _changed();
}

void LiveMode::goAway()
{
    if (std::exchange(_step, Step::Away) == Step::Away)
        return;
    if (std::exchange(_hasUnconfirmedText, false))
        _context.presenter.showNotice(localized(
            "The connection to the Corvane was lost. What was written last may not have reached it."));
    _changed();
}

void LiveMode::sendString(const QString &text)
{
    CVBTDevice &device = _context.device;
    qsizetype replaced = 0;
    device.sendString(text, &replaced);
    _hasUnconfirmedText = device.unconfirmedWrites() > 0;
    if (replaced > 0 && !std::exchange(_hasToldReplaced, true))
        _context.presenter.showNotice(
            localized("Characters that the Corvane does not have are sent as \"?\"."));
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
