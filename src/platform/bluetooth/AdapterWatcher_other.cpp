// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/CharacteristicWriter.h"
#include "platform/bluetooth/LocalDeviceWatcher.h"

namespace cvtamber {

std::unique_ptr<AdapterWatcher> makeAdapterWatcher()
{
    return std::make_unique<LocalDeviceWatcher>();
}

std::unique_ptr<CharacteristicWriter> makeCharacteristicWriter(const QString &)
{
    return nullptr;
}

} // namespace cvtamber
