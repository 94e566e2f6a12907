// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/SyncClientSocket.h"

namespace cvtamber {

std::error_code askForDownload(const QString &, const QString &)
{
    return std::make_error_code(std::errc::operation_not_supported);
}

} // namespace cvtamber
