// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/BluezAdapterWatcher.h"
#include "platform/bluetooth/BluezCharacteristicWriter.h"

namespace cvtamber {

std::unique_ptr<AdapterWatcher> makeAdapterWatcher()
{
    return std::make_unique<BluezAdapterWatcher>();
}

std::unique_ptr<CharacteristicWriter> makeCharacteristicWriter(const QString &address)
{
    return std::make_unique<BluezCharacteristicWriter>(address);
}

} // namespace cvtamber
