// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonDocument>

namespace cvtamber {

// JSON on one line, with its line end. Characters that a terminal would obey or that change the direction of
// writing are escaped, so the line may be shown as it is.
QByteArray jsonLine(const QJsonDocument &document);

} // namespace cvtamber
