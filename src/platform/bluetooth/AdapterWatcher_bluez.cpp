// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bluetooth/BluezAdapterWatcher.h"

namespace cvtamber {

std::unique_ptr<AdapterWatcher> makeAdapterWatcher()
{
    return std::make_unique<BluezAdapterWatcher>();
}

} // namespace cvtamber
