// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber::BusAddress {

// The address of the system bus in its usual place.
QString ofSystemBus();
// Whether any alternative of the address leads to the system bus in its usual place, by whatever path.
bool isSystemBus(const QString &address);

} // namespace cvtamber::BusAddress
