// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ScanVerb.h"

#include "base/VisibleText.h"
#include "cli/JsonLine.h"

#include <QJsonArray>
#include <QJsonObject>

namespace cvtamber {

using namespace Qt::StringLiterals;

ScanVerb::ScanVerb(const VerbContext &context, const VerbRequest &request)
    : Verb(context, request)
    , _finder(context.runLoop, context.manager)
{}

void ScanVerb::prepare()
{
    if (!request().json)
        _finder.setSeen([this](const CVBTPeripheralPtr &device) { printDevice(*device); });
    _finder.start(DeviceFinder::Want::All, context().deviceName, context().timeout,
                  [this](const DeviceFinder::Outcome &outcome) { over(outcome); });
}

void ScanVerb::printDevice(const CVBTPeripheral &device)
{
    const auto field = [](const QString &text) { return text.isEmpty() ? u"-"_s : visibleText(text); };
    const QString line = field(device.serialNumber()) + u'\t' + field(device.airName()) + u'\n';
    _printed = console().writeOutput(line.toUtf8()) && _printed;
}

QByteArray ScanVerb::json() const
{
    const auto field = [](const QString &text) { return text.isEmpty() ? QJsonValue() : QJsonValue(text); };
    QJsonArray array;
    for (const CVBTPeripheralPtr &device : _finder.devices())
        array.append(
            QJsonObject{{u"serial"_s, field(device->serialNumber())}, {u"name"_s, field(device->airName())}});
    return jsonLine(QJsonDocument(array));
}

void ScanVerb::over(const DeviceFinder::Outcome &outcome)
{
    if (request().json && outcome.status != ExitStatus::NoBluetooth)
        _printed = console().writeOutput(json());
    if (outcome.status != ExitStatus::Done)
        fail(outcome.status, outcome.sentence);
    else
        finish(_printed ? ExitStatus::Done : ExitStatus::Failed);
}

} // namespace cvtamber
