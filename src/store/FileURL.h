// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHashFunctions>
#include <QString>
#include <QUrl>

#include <compare>

namespace cvtamber {

// Where something of the store is: the one place where paths and URLs are built.
//
// A directory URL ends in "/", its path() does not; a file and a directory of the same path are different
// URLs. The folder part is shared by all URLs built from one directory, so a hundred thousand documents hold
// each folder's path once. A value; any thread.
class FileURL
{
public:
    // Nil: no URL.
    FileURL() = default;
    // An absolute path; repeated and trailing separators are dropped, "." and ".." are not resolved.
    static FileURL file(const QString &path) { return make(path, false); }
    static FileURL directory(const QString &path) { return make(path, true); }

    // The item of that name in this directory. A name with a separator, "." or ".." gives nil: it would lead
    // elsewhere. An empty name too.
    FileURL appendingFile(const QString &name) const { return child(name, false); }
    FileURL appendingDirectory(const QString &name) const { return child(name, true); }
    // The directory that holds this; "/" for "/" itself.
    FileURL deletingLastPathComponent() const;

    bool isNil() const { return _folder.isNull(); }
    bool isDirectory() const { return _isDirectory; }
    // Without a separator at its end ("/" excepted). Null for nil.
    QString path() const;
    // The length of path() without building it.
    qsizetype pathLength() const;
    const QString &lastPathComponent() const { return _name; }
    // What follows the last dot of the last component; empty without a dot, or when the dot comes first.
    QString pathExtension() const;
    // The last component without the dot and the extension.
    QString nameWithoutExtension() const;
    // For what wants a real URL (previews, attachments): "file:///...", percent-encoded.
    QUrl toUrl() const;

    bool operator==(const FileURL &) const = default;
    friend size_t qHash(const FileURL &url, size_t seed = 0) noexcept
    {
        return qHashMulti(seed, url._folder, url._name, url._isDirectory);
    }

private:
    static FileURL make(const QString &path, bool isDirectory);
    FileURL child(const QString &name, bool isDirectory) const;

    // Of a directory its own path with the separator at its end, of a file the directory's that holds it.
    QString _folder;
    // The last component; empty for "/" alone.
    QString _name;
    bool _isDirectory = false;
};

} // namespace cvtamber

template<> struct std::hash<cvtamber::FileURL>
{
    // Without noexcept, which would tell the standard containers that hashing two texts is cheap enough to be
    // done again at each step.
    size_t operator()(const cvtamber::FileURL &url) const { return qHash(url); }
};
