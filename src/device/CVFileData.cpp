// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/CVFileData.h"

namespace cvtamber {

QString CVFileData::description() const
{
    return QStringLiteral("name: %1 | size: %2").arg(_name, QString::number(_size));
}

} // namespace cvtamber
