// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileSync.h"

#include <QtGlobal>

#include <cerrno>

#ifdef Q_OS_WIN
#include <io.h>
#include <qt_windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace cvtamber {

#ifdef Q_OS_WIN

bool syncToDisk(int fileDescriptor)
{
    return FlushFileBuffers(reinterpret_cast<HANDLE>(_get_osfhandle(fileDescriptor))) != 0;
}

#else

bool syncToDisk(int fileDescriptor)
{
#ifdef Q_OS_DARWIN
    // Here fsync stops at the drive's own cache.
    if (fcntl(fileDescriptor, F_FULLFSYNC) == 0)
        return true;
#endif
    while (fsync(fileDescriptor) != 0) {
        // A pipe, a terminal and some network folders have nothing to sync.
        if (errno == EINVAL || errno == ENOTSUP || errno == EROFS)
            return true;
        if (errno != EINTR)
            return false;
    }
    return true;
}

#endif

} // namespace cvtamber
