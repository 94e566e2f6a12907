// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/DeviceProfile.h"
#include "simulator/JsonFields.h"

namespace cvtamber {

// Adds what one entry of "faults" says to the profile of its device.
void readFault(const QJsonValue &value, const QString &place, DeviceProfile &device, QString &error);

void readMilliseconds(JsonFields &fields, const QString &key, std::chrono::milliseconds &target);
void readBase64(JsonFields &fields, const QString &key, QByteArray &target);

} // namespace cvtamber
