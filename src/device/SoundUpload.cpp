// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/SoundUpload.h"

#include "device/CommandEngine.h"
#include "device/CommandSender.h"

namespace cvtamber {

namespace {

constexpr qsizetype firstHeaderPart = 9;
constexpr qsizetype secondHeaderPart = 5;
constexpr qsizetype soundOffset = 15;
// The byte with which the device asks for the whole sound.
constexpr char soundRequest = 2;

} // namespace

SoundUpload::SoundUpload(CommandEngine &engine, CommandSender &sender)
    : _engine(engine)
    , _sender(sender)
{}

bool SoundUpload::uploadSoundData(const QByteArray &data)
{
    if (data.size() < soundOffset)
        return false;
    _engine.sendCommand(QStringLiteral("FLASH"));
    _sender.internalSendData(data.left(firstHeaderPart));
    _sender.internalSendData(data.mid(firstHeaderPart, secondHeaderPart));
    _soundData = data.mid(soundOffset);
    _engine.awaitSoundRequests();
    return true;
}

void SoundUpload::handle_cmdFLASH_result(QByteArray &buffer)
{
    const qsizetype requests = buffer.count(soundRequest);
    buffer.clear();
    for (qsizetype request = 0; request < requests; ++request)
        _sender.sendData(_soundData);
}

} // namespace cvtamber
