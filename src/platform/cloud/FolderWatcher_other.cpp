// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/PollingWatcher.h"

namespace cvtamber {

FolderWatcher::Factory FolderWatcher::bestFactory(RunLoop &runLoop)
{
    return [&runLoop](Handlers handlers) {
        return std::make_unique<PollingWatcher>(runLoop, std::move(handlers));
    };
}

} // namespace cvtamber
