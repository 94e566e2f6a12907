// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cvtamber {

// Returns when what was written to the open file has reached the disk; false when the system says that it has
// not. The descriptor is the C library's, as QFile::handle() gives it. Any thread.
bool syncToDisk(int fileDescriptor);

} // namespace cvtamber
