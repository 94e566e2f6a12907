// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreProblems.h"

#include <QFile>
#include <QJsonObject>
#include <QString>

namespace cvtamber {

// What a program is about to do, what is done and what went wrong, a line of JSON each, in the system's hands when the
// call returns: a killed program leaves it whole.
class Journal final : public StoreProblemObserver
{
public:
    explicit Journal(const QString &path);

    bool isOpen() const { return _file.isOpen(); }
    // Before anything of it is done.
    void begin(int number, const QString &what, const QJsonObject &details);
    // `details` are what could not be known before.
    void done(int number, const QJsonObject &details = {});
    void failed(int number, const QString &why);
    // Nothing stands in the way of a busy store, so there is none but the missing record of a folder, which a kill
    // can leave without one.
    void storeProblem(const StoreProblem &problem) override;

private:
    void append(QJsonObject line, int number);

    QFile _file;
};

} // namespace cvtamber
