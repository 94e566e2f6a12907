// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QString>
#include <QVariant>

namespace cvtamber {

// The person's settings, kept from run to run; another process may change them.
//
// A change is on the disk when setValue returns. Thread: main thread. Owner: made at start-up, outlives its users.
class UserDefaults : public InterfaceBase
{
public:
    // Invalid when the key has no value.
    virtual QVariant value(const QString &key) = 0;
    virtual void setValue(const QString &key, const QVariant &value) = 0;
    // Reads what other processes have changed.
    virtual void synchronize() = 0;

    // False when the key has no value.
    bool boolValue(const QString &key) { return value(key).toBool(); }
};

} // namespace cvtamber
