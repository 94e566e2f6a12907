// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace cvtamber {

struct SimulatedFile
{
    QByteArray name;
    QByteArray bytes;

    friend bool operator==(const SimulatedFile &a, const SimulatedFile &b)
    {
        return a.name == b.name && a.bytes == b.bytes;
    }
};

// How the listing writes a size.
enum class SizeStyle {
    Decimal,       // 120
    Braille,       // #ABJ: "A" to "I" are 1 to 9, "J" is 0
    FrenchBraille, // ,*<#: "*" to "[" are 1 to 9, "#" is 0
};

// The files of a simulated device, in the order in which they were stored, within a total size.
class DeviceStorage
{
public:
    explicit DeviceStorage(qsizetype limit)
        : _limit(limit)
    {}

    const QList<SimulatedFile> &files() const { return _files; }
    void setFiles(const QList<SimulatedFile> &files);
    // Bytes of all files and of the names they are listed under.
    qsizetype used() const;
    qsizetype available() const;
    // Bytes that did not fit since the device was made.
    qsizetype dropped() const { return _dropped; }

    // Replaces the first file of that name in its place; what does not fit is cut off and counted.
    void store(const QByteArray &name, const QByteArray &bytes);
    // The first file whose name is exactly this one.
    std::optional<QByteArray> find(const QByteArray &name) const;
    // Removes the first file of that name; false when there is none.
    bool remove(const QByteArray &name);
    // One "NAME SIZE" a line, each ended by carriage return and line feed.
    QByteArray listing(SizeStyle style) const;

    static QByteArray sizeText(qsizetype size, SizeStyle style);

private:
    qsizetype indexOf(const QByteArray &name) const;

    QList<SimulatedFile> _files;
    qsizetype _limit;
    qsizetype _dropped = 0;
};

} // namespace cvtamber
