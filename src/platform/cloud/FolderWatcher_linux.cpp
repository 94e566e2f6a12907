// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/InotifyWatcher.h"

namespace cvtamber {

FolderWatcher::Factory FolderWatcher::bestFactory(RunLoop &)
{
    return [](Handlers handlers) { return std::make_unique<InotifyWatcher>(std::move(handlers)); };
}

} // namespace cvtamber
