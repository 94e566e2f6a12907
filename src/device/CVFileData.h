// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace cvtamber {

// One file on the device, as listed.
class CVFileData
{
public:
    CVFileData(const QString &name, quint64 size)
        : _name(name)
        , _size(size)
    {}

    // No spaces: the listing cuts a name at the first one. May hold control bytes; sanitize before showing.
    QString name() const { return _name; }
    void setName(const QString &name) { _name = name; }
    // In the device's unit, characters.
    quint64 size() const { return _size; }
    void setSize(quint64 size) { _size = size; }
    // "name: NAME | size: SIZE"
    QString description() const;

private:
    QString _name;
    quint64 _size;
};

} // namespace cvtamber
