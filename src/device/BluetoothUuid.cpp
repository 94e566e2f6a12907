// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/BluetoothUuid.h"

namespace cvtamber {

BluetoothUuid::BluetoothUuid(const QString &text)
{
    const QString digits = text.startsWith(QStringLiteral("0x"), Qt::CaseInsensitive) ? text.mid(2) : text;
    if (digits.size() != 4) {
        _uuid = QUuid::fromString(text);
        return;
    }
    bool ok = false;
    const ushort number = digits.toUShort(&ok, 16);
    // The Bluetooth base identifier, into which short forms are inserted.
    if (ok)
        _uuid = QUuid(number, 0x0000, 0x1000, 0x80, 0x00, 0x00, 0x80, 0x5f, 0x9b, 0x34, 0xfb);
}

} // namespace cvtamber
