// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/InfoVerb.h"

#include "base/VisibleText.h"
#include "cli/JsonLine.h"
#include "text/DeviceTables.h"

#include <QJsonObject>

namespace cvtamber {

using namespace Qt::StringLiterals;

void InfoVerb::run(Session &session)
{
    session.withListing([this, &session] {
        const CVBTDevice &device = session.device();
        const bool written = console().writeOutput(request().json ? json(device) : lines(device));
        finish(written ? ExitStatus::Done : ExitStatus::Failed);
    });
}

QByteArray InfoVerb::json(const CVBTDevice &device)
{
    const auto text = [](const QString &value) { return value.isEmpty() ? QJsonValue() : QJsonValue(value); };
    return jsonLine(QJsonDocument(QJsonObject{
        {u"model"_s, text(modelName(device.cvModel()))},
        {u"modelCode"_s, device.cvModel()},
        {u"firmware"_s, text(device.cvFirmwareVersion())},
        {u"serial"_s, text(device.cvSerialNumber())},
        {u"language"_s, device.cvLanguage()},
        {u"languageName"_s, languageName(device.cvLanguage())},
        {u"keyboardLanguage"_s, device.cvKeyboardLanguage()},
        {u"keyboardLanguageName"_s, languageName(device.cvKeyboardLanguage())},
        {u"brailleCode"_s, device.cvBrailleCode()},
        {u"brailleCodeName"_s, brailleCodeName(device.cvBrailleCode())},
        {u"forwardGrade"_s, device.forwardGrade()},
        {u"backwardGrade"_s, device.backwardGrade()},
        {u"advancedMode"_s, device.advancedModeOn()},
        {u"embosserOn"_s, device.embosserOn()},
        {u"connectionType"_s, device.connectionType()},
        {u"files"_s, device.getFilesCount()},
    }));
}

QByteArray InfoVerb::lines(const CVBTDevice &device)
{
    QString result;
    const auto add = [&result](QLatin1StringView label, const QString &value) {
        result += label + ": "_L1 + (value.isEmpty() ? u"-"_s : visibleText(value)) + u'\n';
    };
    const auto onOff = [](bool on) { return on ? u"on"_s : u"off"_s; };
    add("Model"_L1, modelName(device.cvModel()));
    add("Firmware"_L1, device.cvFirmwareVersion());
    add("Serial number"_L1, device.cvSerialNumber());
    add("Language"_L1, languageName(device.cvLanguage()));
    add("Keyboard language"_L1, languageName(device.cvKeyboardLanguage()));
    add("Braille code"_L1, brailleCodeName(device.cvBrailleCode()));
    add("Forward grade"_L1, QString::number(device.forwardGrade()));
    add("Backward grade"_L1, QString::number(device.backwardGrade()));
    add("Advanced mode"_L1, onOff(device.advancedModeOn()));
    add("Embosser"_L1, onOff(device.embosserOn()));
    add("Connection type"_L1, QString::number(device.connectionType()));
    add("Files"_L1, QString::number(device.getFilesCount()));
    return result.toUtf8();
}

} // namespace cvtamber
