// SPDX-License-Identifier: GPL-3.0-or-later
#include "crashes/Journal.h"

#include "store/StoreNames.h"

#include <QJsonDocument>

namespace cvtamber {

using namespace Qt::StringLiterals;

Journal::Journal(const QString &path)
    : _file(path)
{
    _file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void Journal::begin(int number, const QString &what, const QJsonObject &details)
{
    QJsonObject line = details;
    line.insert(u"what"_s, what);
    append(line, number);
}

void Journal::done(int number, const QJsonObject &details)
{
    QJsonObject line = details;
    line.insert(u"done"_s, true);
    append(line, number);
}

void Journal::failed(int number, const QString &why)
{
    append({{u"failed"_s, why}}, number);
}

void Journal::storeProblem(const StoreProblem &problem)
{
    if (problem.what == StoreProblem::What::Open && problem.url.lastPathComponent() == FolderRecordName)
        return;
    failed(0, u"problem %1 with %2: %3"_s.arg(QString::number(int(problem.what)), problem.url.path(),
                                              problem.why));
}

void Journal::append(QJsonObject line, int number)
{
    line.insert(u"number"_s, number);
    const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    if (_file.write(bytes) != bytes.size())
        qFatal("the journal cannot be written");
}

} // namespace cvtamber
