// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/DeviceProfile.h"

#include <QByteArray>
#include <QString>

namespace cvtamber {

struct ProfileResult
{
    DeviceProfileSet profiles;
    QString error; // one sentence with the place; empty when the profile is good
};

// A profile as JSON, see docs/simulator.md for its keys. Any bytes are fine: what is wrong is told.
ProfileResult parseProfile(const QByteArray &json);
// The error begins with the path.
ProfileResult readProfileFile(const QString &path);

} // namespace cvtamber
