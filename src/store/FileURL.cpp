// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/FileURL.h"

namespace cvtamber {

namespace {

constexpr QChar Separator = u'/';

bool leadsElsewhere(const QString &name)
{
    return name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") ||
           name.contains(Separator) || name.contains(QChar(u'\0'));
}

} // namespace

FileURL FileURL::make(const QString &path, bool isDirectory)
{
    FileURL url;
    QString clean = path;
    while (clean.contains(QLatin1String("//")))
        clean.replace(QLatin1String("//"), QLatin1String("/"));
    while (clean.size() > 1 && clean.endsWith(Separator))
        clean.chop(1);
    if (!clean.startsWith(Separator) && !(clean.size() > 1 && clean[1] == u':'))
        return url;
    const qsizetype slash = clean.lastIndexOf(Separator);
    url._name = clean.sliced(slash + 1);
    url._isDirectory = isDirectory;
    if (isDirectory)
        url._folder = url._name.isEmpty() ? clean : QString(clean % Separator);
    else
        url._folder = clean.first(slash + 1);
    return url;
}

FileURL FileURL::child(const QString &name, bool isDirectory) const
{
    FileURL url;
    if (isNil() || leadsElsewhere(name))
        return url;
    const QString folder = _isDirectory ? _folder : QString(_folder % _name % Separator);
    url._folder = isDirectory ? QString(folder % name % Separator) : folder;
    url._name = name;
    url._isDirectory = isDirectory;
    return url;
}

FileURL FileURL::deletingLastPathComponent() const
{
    if (isNil() || _name.isEmpty())
        return *this;
    return make(_isDirectory ? _folder.chopped(_name.size() + 1) : _folder, true);
}

QString FileURL::path() const
{
    if (_isDirectory)
        return _name.isEmpty() ? _folder : _folder.chopped(1);
    return _folder % _name;
}

qsizetype FileURL::pathLength() const
{
    if (_isDirectory)
        return _name.isEmpty() ? _folder.size() : _folder.size() - 1;
    return _folder.size() + _name.size();
}

QString FileURL::pathExtension() const
{
    const qsizetype dot = _name.lastIndexOf(u'.');
    return dot > 0 ? _name.sliced(dot + 1) : QString();
}

QString FileURL::nameWithoutExtension() const
{
    const qsizetype dot = _name.lastIndexOf(u'.');
    return dot > 0 ? _name.first(dot) : _name;
}

QUrl FileURL::toUrl() const
{
    if (isNil())
        return {};
    return QUrl::fromLocalFile(_isDirectory ? _folder : path());
}

} // namespace cvtamber
