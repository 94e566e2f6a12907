// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/DeviceStorage.h"

#include <algorithm>

namespace cvtamber {

void DeviceStorage::setFiles(const QList<SimulatedFile> &files)
{
    _files.clear();
    for (const SimulatedFile &file : files) {
        const qsizetype room = available() - file.name.size();
        if (room < 0) {
            _dropped += file.bytes.size();
            continue;
        }
        _files.append({file.name, file.bytes.left(room)});
        _dropped += std::max(qsizetype{0}, file.bytes.size() - room);
    }
}

qsizetype DeviceStorage::used() const
{
    qsizetype sum = 0;
    for (const SimulatedFile &file : _files)
        sum += file.name.size() + file.bytes.size();
    return sum;
}

qsizetype DeviceStorage::available() const
{
    return std::max(qsizetype{0}, _limit - used());
}

void DeviceStorage::store(const QByteArray &name, const QByteArray &bytes)
{
    qsizetype index = indexOf(name);
    if (index >= 0) {
        _files[index].bytes.clear();
    } else if (available() < name.size()) {
        _dropped += bytes.size();
        return;
    } else {
        index = _files.size();
        _files.append({name, {}});
    }
    const qsizetype room = available();
    _files[index].bytes = bytes.left(room);
    _dropped += std::max(qsizetype{0}, bytes.size() - room);
}

std::optional<QByteArray> DeviceStorage::find(const QByteArray &name) const
{
    const qsizetype index = indexOf(name);
    if (index < 0)
        return std::nullopt;
    return _files[index].bytes;
}

bool DeviceStorage::remove(const QByteArray &name)
{
    const qsizetype index = indexOf(name);
    if (index < 0)
        return false;
    _files.removeAt(index);
    return true;
}

QByteArray DeviceStorage::listing(SizeStyle style) const
{
    QByteArray lines;
    for (const SimulatedFile &file : _files)
        lines += file.name + ' ' + sizeText(file.bytes.size(), style) + "\r\n";
    return lines.isEmpty() ? QByteArray("\r\n") : lines;
}

QByteArray DeviceStorage::sizeText(qsizetype size, SizeStyle style)
{
    QByteArray text = QByteArray::number(size);
    if (style == SizeStyle::Decimal)
        return text;
    const bool french = style == SizeStyle::FrenchBraille;
    const char *digits = french ? "#*<%?:$]\\[" : "JABCDEFGHI";
    for (char &digit : text)
        digit = digits[digit - '0'];
    return (french ? ',' : '#') + text;
}

qsizetype DeviceStorage::indexOf(const QByteArray &name) const
{
    const auto found = std::find_if(_files.cbegin(), _files.cend(),
                                    [&name](const SimulatedFile &file) { return file.name == name; });
    return found == _files.cend() ? -1 : found - _files.cbegin();
}

} // namespace cvtamber
