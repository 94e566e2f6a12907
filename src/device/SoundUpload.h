// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace cvtamber {

class CommandEngine;
class CommandSender;

// Sends a sound to the device: the command, a header in two direct writes, and the rest whenever the device
// asks.
class SoundUpload
{
public:
    SoundUpload(CommandEngine &engine, CommandSender &sender);

    // False, and nothing sent, for fewer than 15 bytes: header (14), a byte that is never sent, and the
    // sound.
    bool uploadSoundData(const QByteArray &data);
    void handle_cmdFLASH_result(QByteArray &buffer);
    void drop() { _soundData.clear(); }

private:
    CommandEngine &_engine;
    CommandSender &_sender;
    QByteArray _soundData;
};

} // namespace cvtamber
