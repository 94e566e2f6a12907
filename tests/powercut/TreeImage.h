// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>

namespace cvtamber {

// Files and folders below a root, as a value: relative path to bytes, or to nothing for a folder.
using TreeImage = std::map<QString, std::optional<QByteArray>>;

TreeImage readTree(const QString &root);
// Into a folder that exists and is empty; false when the disk does not want to.
bool writeTree(const TreeImage &tree, const QString &root);
// Equal for equal trees.
QByteArray digestOf(const TreeImage &tree);
// The paths with the sizes of the files, for a failure's message.
QString describe(const TreeImage &tree);

} // namespace cvtamber
