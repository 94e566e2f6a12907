// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QString>

namespace cvtamber {

// What happens to the link, told to any number of observers beside the one state delegate. Screens observe; the role
// of the delegate is for one owner.
//
//   linkStateChanged       what the state delegate is told, in the same order
//   linkConnected          the device is connected and identified (state 1 of the state delegate)
//   linkLost               the link ended and nobody here asked for it; all that was under way has been dropped
//   linkClosed             the link ended because this side asked for it
//   linkStalled            bytes wait and no confirmation has come for 6 seconds; once for each such silence
//   linkWritesConfirmed    the last outstanding write is over and nothing waits to be written
//   linkWriteFailed        the platform reported a write as failed; the bytes may not have reached the device
//
// Observers are not kept alive and may be removed, or removed and destroyed, inside a call. Main thread.
class LinkObserver : public InterfaceBase
{
public:
    virtual void linkStateChanged(int /*state*/) {}
    virtual void linkConnected() {}
    virtual void linkLost(const QString & /*reason*/) {}
    virtual void linkClosed() {}
    virtual void linkStalled() {}
    virtual void linkWritesConfirmed() {}
    virtual void linkWriteFailed(const QString & /*reason*/) {}
};

} // namespace cvtamber
