// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/CloudNames.h"
#include "store/FileURL.h"

#include <system_error>

namespace cvtamber {

inline constexpr int MostConflictCopies = 1000;

// Gives another program's version of the document a name beside it: calls `take` with one path after the other
// until it does not say that the name is in use. `kept` is then where the version is. Any thread.
template<typename Take>
std::error_code takeConflictCopyName(const FileURL &document, FileURL &kept, const Take &take)
{
    std::error_code error;
    for (int number = 1; number <= MostConflictCopies; ++number) {
        const FileURL url = document.deletingLastPathComponent().appendingFile(
            conflictCopyName(document.lastPathComponent(), number));
        error = take(url.path());
        if (!error)
            kept = url;
        if (error != std::errc::file_exists)
            break;
    }
    return error;
}

} // namespace cvtamber
