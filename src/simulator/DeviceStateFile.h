// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/DeviceStorage.h"

#include <QString>

#include <optional>

namespace cvtamber {

// What a simulated device keeps between runs.
struct SavedDeviceState
{
    QList<SimulatedFile> files;
    int backwardGrade = 1;
    int forwardGrade = 1;
    QByteArray embosserPage;
};

// The file of one device in the state folder, named after its serial number; replaced as a whole. Two
// programs that run the same device at once overwrite each other's state: the last one counts.
class DeviceStateFile
{
public:
    struct Loaded
    {
        std::optional<SavedDeviceState> state; // absent: none was saved, or it cannot be used
        QString error;                         // why it cannot, one sentence
    };

    // An empty folder: nothing is read or written.
    DeviceStateFile(const QString &folder, const QByteArray &serial);

    bool isUsed() const { return !_path.isEmpty(); }
    QString path() const { return _path; }
    // A file that cannot be read is put aside under a name ending in ".damaged".
    Loaded load() const;
    // The error as one sentence, empty on success. Makes the folder when it is missing.
    QString save(const SavedDeviceState &state) const;

private:
    QString _path;
};

} // namespace cvtamber
