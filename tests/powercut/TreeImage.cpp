// SPDX-License-Identifier: GPL-3.0-or-later
#include "powercut/TreeImage.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QStringList>

#include <algorithm>

namespace cvtamber {

using namespace Qt::StringLiterals;

TreeImage readTree(const QString &root)
{
    TreeImage tree;
    QDirIterator entries(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        auto &bytes = tree[path.mid(root.size() + 1)];
        if (entries.fileInfo().isDir())
            continue;
        QFile file(path);
        // An unreadable file counts as empty, which no expectation has.
        bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    return tree;
}

bool writeTree(const TreeImage &tree, const QString &root)
{
    // A folder comes before what lies in it.
    return std::all_of(tree.begin(), tree.end(), [&](const auto &entry) {
        const QString path = root + u'/' + entry.first;
        if (!entry.second)
            return QDir().mkdir(path);
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
               file.write(*entry.second) == entry.second->size();
    });
}

QByteArray digestOf(const TreeImage &tree)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const auto &[path, bytes] : tree) {
        hash.addData(path.toUtf8());
        hash.addData(bytes ? QByteArray("\0f", 2) + QByteArray::number(bytes->size()) + ':' + *bytes
                           : QByteArray("\0d", 2));
    }
    return hash.result();
}

QString describe(const TreeImage &tree)
{
    QStringList lines;
    for (const auto &[path, bytes] : tree)
        lines.append(bytes ? u"%1 (%2 bytes)"_s.arg(path, QString::number(bytes->size())) : path + u'/');
    return lines.join(u'\n');
}

} // namespace cvtamber
