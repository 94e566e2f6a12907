// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUuid>

namespace cvtamber {

// A Bluetooth identifier. The 16-bit short form ("1800", "0x180D") and the 128-bit form of the same number
// are equal.
class BluetoothUuid
{
public:
    BluetoothUuid() = default;
    // Four hexadecimal digits, with or without "0x", or a whole UUID; anything else gives a null identifier.
    explicit BluetoothUuid(const QString &text);

    bool isNull() const { return _uuid.isNull(); }
    QUuid toQUuid() const { return _uuid; }
    // Lower case, 128 bits, without braces.
    QString toString() const { return _uuid.toString(QUuid::WithoutBraces); }

    friend bool operator==(const BluetoothUuid &a, const BluetoothUuid &b) { return a._uuid == b._uuid; }
    friend bool operator!=(const BluetoothUuid &a, const BluetoothUuid &b) { return !(a == b); }

private:
    QUuid _uuid;
};

} // namespace cvtamber
