// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber {

// The text of a key in the translation catalogue; the key itself where the catalogue has none. Main thread.
QString localized(const char *key);

// The text of a key with its one "%@" filled in.
QString localizedFormat(const char *key, const QString &argument);

} // namespace cvtamber
