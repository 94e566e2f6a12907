// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/DeviceStateFile.h"

#include "base/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace cvtamber {

namespace {

constexpr int FormatVersion = 1;
// Twice the largest storage and page in base64; anything larger is not ours.
constexpr qint64 MaximalFileSize = 256LL * 1024 * 1024;

QString base64Text(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

std::optional<QByteArray> bytesOf(const QJsonValue &value)
{
    if (!value.isString())
        return std::nullopt;
    const auto decoded =
        QByteArray::fromBase64Encoding(value.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return *decoded;
}

std::optional<SavedDeviceState> parsed(const QByteArray &json)
{
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    const auto page = bytesOf(root[u"embosserPage"]);
    const QJsonValue files = root[u"files"];
    if (root[u"version"].toInt() != FormatVersion || !page || !files.isArray() ||
        !root[u"backwardGrade"].isDouble() || !root[u"forwardGrade"].isDouble())
        return std::nullopt;
    SavedDeviceState state{{}, root[u"backwardGrade"].toInt(), root[u"forwardGrade"].toInt(), *page};
    for (const auto &file : files.toArray()) {
        const auto name = bytesOf(file.toObject()[u"name"]);
        const auto bytes = bytesOf(file.toObject()[u"bytes"]);
        if (!name || !bytes)
            return std::nullopt;
        state.files.append({*name, *bytes});
    }
    return state;
}

QByteArray jsonOf(const SavedDeviceState &state)
{
    QJsonArray files;
    for (const SimulatedFile &file : state.files)
        files.append(QJsonObject{{QStringLiteral("name"), base64Text(file.name)},
                                 {QStringLiteral("bytes"), base64Text(file.bytes)}});
    return QJsonDocument(QJsonObject{{QStringLiteral("version"), FormatVersion},
                                     {QStringLiteral("backwardGrade"), state.backwardGrade},
                                     {QStringLiteral("forwardGrade"), state.forwardGrade},
                                     {QStringLiteral("embosserPage"), base64Text(state.embosserPage)},
                                     {QStringLiteral("files"), files}})
        .toJson();
}

} // namespace

DeviceStateFile::DeviceStateFile(const QString &folder, const QByteArray &serial)
{
    if (!folder.isEmpty())
        _path =
            QDir(folder).filePath(QStringLiteral("device-") +
                                  QString::fromLatin1(serial.toPercentEncoding()) + QStringLiteral(".json"));
}

DeviceStateFile::Loaded DeviceStateFile::load() const
{
    if (_path.isEmpty() || !QFileInfo::exists(_path))
        return {};
    QFile file(_path);
    if (file.open(QIODevice::ReadOnly) && file.size() <= MaximalFileSize) {
        if (const auto state = parsed(file.readAll()))
            return {state, {}};
    }
    file.close();
    const QString aside = _path + QStringLiteral(".damaged");
    QFile::remove(aside);
    const bool moved = QFile::rename(_path, aside);
    return {std::nullopt,
            QStringLiteral("The simulated device's saved state %1 cannot be read; it begins as its "
                           "profile says%2.")
                .arg(_path, moved ? QStringLiteral(", and the file is kept as ") + aside : QString())};
}

QString DeviceStateFile::save(const SavedDeviceState &state) const
{
    if (_path.isEmpty())
        return {};
    if (!QDir().mkpath(QFileInfo(_path).path()))
        return QStringLiteral("The folder for the simulated device's state cannot be made: %1.").arg(_path);
    const DurableFileResult result = replaceFile(_path, jsonOf(state));
    if (result.ok())
        return {};
    return QStringLiteral("The simulated device's state cannot be saved in %1: %2.")
        .arg(_path, result.message);
}

} // namespace cvtamber
