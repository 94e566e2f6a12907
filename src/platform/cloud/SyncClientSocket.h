// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <system_error>

namespace cvtamber {

// Asks the sync program that listens on the local socket for a document's bytes; `placeholder` is the path of
// what stands for it. Success when the request was handed over: no answer is waited for. Never waits. An
// argument that the program's line-based requests cannot carry is invalid_argument. Any thread.
std::error_code askForDownload(const QString &socket, const QString &placeholder);

} // namespace cvtamber
