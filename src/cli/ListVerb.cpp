// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ListVerb.h"

#include "base/VisibleText.h"
#include "cli/JsonLine.h"

#include <QJsonArray>
#include <QJsonObject>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

QByteArray jsonListing(const QList<CVFileData> &files)
{
    QJsonArray array;
    for (const CVFileData &file : files)
        array.append(QJsonObject{{u"name"_s, file.name()}, {u"size"_s, static_cast<qint64>(file.size())}});
    return jsonLine(QJsonDocument(array));
}

QByteArray plainListing(const QList<CVFileData> &files)
{
    QByteArray lines;
    for (const CVFileData &file : files)
        lines += QByteArray::number(file.size()) + '\t' + visibleText(file.name()).toUtf8() + '\n';
    return lines;
}

} // namespace

void ListVerb::run(Session &session)
{
    // A list without files may be that of a device that has not answered.
    if (session.device().getFilesCount() == 0)
        session.forgetListing();
    session.withListing([this, &session] {
        const auto files = session.device().files();
        const bool written = console().writeOutput(request().json ? jsonListing(files) : plainListing(files));
        finish(written ? ExitStatus::Done : ExitStatus::Failed);
    });
}

} // namespace cvtamber
