// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QByteArray>
#include <QString>

namespace cvtamber {

// A central's side of the one link of a device; several centrals share that link.
class SimulatedLinkHolder : public InterfaceBase
{
public:
    virtual void linkNotified(const QByteArray &value) = 0;
    // The error is null when the link ended without one.
    virtual void linkEnded(const QString &error) = 0;
    // For who waited for a device out of range.
    virtual void deviceCameBack() = 0;
};

} // namespace cvtamber
