// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <system_error>

namespace cvtamber {

// What the system says about an error, as a part of a sentence: "no space left on device". Any thread.
QString errorText(const std::error_code &error);

} // namespace cvtamber
