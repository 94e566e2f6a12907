// SPDX-License-Identifier: GPL-3.0-or-later
// What must hold in a walk.
#include "schedules/Walk.h"

#include "chat/Chat2ViewController.h"
#include "chat/ChatViewController.h"
#include "ui/NavigationController.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

QByteArray inBraille(const QByteArray &text)
{
    return "<braille 1>" + text + "</braille>";
}

// In its order.
bool isPartOf(const QByteArray &some, const QByteArray &all)
{
    qsizetype at = 0;
    for (qsizetype i = 0; i < all.size() && at < some.size(); ++i)
        at += all[i] == some[at] ? 1 : 0;
    return at == some.size();
}

} // namespace

SimulatedDevice *Walk::linked() const
{
    for (const auto &device : _bench.radio->devices()) {
        if (device->isLinked())
            return device.get();
    }
    return nullptr;
}

// Nothing is under way that would change the device.
bool Walk::isQuiet() const
{
    const CVBTDevice &device = _bench.device;
    return linked() && device.turn().isFree() && device.queuedBytes() == 0 &&
           device.unconfirmedWrites() == 0 && !_isInDoubt;
}

QString Walk::judge() const
{
    if (isQuiet()) {
        if (QString fault = judgeModes(*linked()); !fault.isNull())
            return fault;
    }
    for (int index = 0; index < Devices; ++index) {
        if (QString fault = judgeFiles(index); !fault.isNull())
            return fault;
    }
    for (const int times : _host->finished) {
        if (times > 1)
            return u"a transfer has finished twice"_s;
    }
    return judgeChat();
}

QString Walk::judgeModes(SimulatedDevice &device) const
{
    using Field = DeviceStateRecord::Field;
    static const DeviceStateRecord Before = FirmwareModel(profileOf(0)).record();
    const auto &record = device.firmware().record();
    for (const auto field : {Field::EmbosserOutput, Field::AdvancedMode, Field::BackTranslationOnS2,
                             Field::ForwardTranslationForEmbossing}) {
        if (record[field] != Before[field])
            return u"field %1 of the state record is %2"_s.arg(int(field)).arg(record[field]);
    }
    using Activity = FirmwareModel::Activity;
    const auto front = _navigation->topViewController();
    const auto expected = std::dynamic_pointer_cast<Chat2ViewController>(front)  ? Activity::Chat
                          : std::dynamic_pointer_cast<ChatViewController>(front) ? Activity::Board
                                                                                 : Activity::Editing;
    // A screen that is on its way enters or leaves the mode at the end of it.
    const bool isOnItsWay = !front->takesActions() && !front->presentedViewController();
    return device.firmware().activity() == expected || isOnItsWay
               ? QString()
               : u"the device's activity is %1, not %2"_s.arg(int(device.firmware().activity()))
                     .arg(int(expected));
}

QString Walk::judgeFiles(int index) const
{
    const DeviceStorage &storage = _bench.simulated(index).firmware().storage();
    for (const SimulatedFile &file : profileOf(index).files) {
        const auto now = storage.find(file.name);
        if (now ? *now != file.bytes : !_mayBeGone.contains(file.name))
            return u"the file %1 of device %2 is not what it was"_s.arg(QString::fromLatin1(file.name))
                .arg(index);
    }
    for (const SimulatedFile &file : storage.files()) {
        if (file.name == "A.TXT" || file.name == "B.TXT")
            continue;
        const auto stored = _stored.constFind(file.name);
        if (stored == _stored.constEnd())
            return u"a file %1 that nobody stored"_s.arg(QString::fromLatin1(file.name));
        // A write that fails takes its bytes away, and what ends the file may go with them.
        if (_hasFailedWrite && isPartOf(file.bytes, *stored + "{END}{S1 OFF}{EM ON}{ADV}"))
            continue;
        // The end of a translated one comes when it is closed.
        if (!stored->startsWith(file.bytes) && !inBraille(*stored).startsWith(file.bytes.left(11)))
            return u"the file %1 holds another text"_s.arg(QString::fromLatin1(file.name));
    }
    return {};
}

QString Walk::judgeChat() const
{
    const auto conversation = Chat2ViewController::conversation();
    if (!conversation)
        return {};
    for (const NSBubblePtr &bubble : *conversation) {
        if (!_said.contains(bubble->view().text))
            return u"the chat shows what nobody has said: "_s + bubble->view().text.left(40);
    }
    return {};
}

} // namespace cvtamber
