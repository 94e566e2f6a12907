// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace cvtamber {

// Reads the keys of one JSON object, each with its type and range, and keeps the first error.
//
// Errors name the place: "devices[0].delays.write: must be a whole number from 0 to 3600000." A key that is
// not there leaves the target as it is; a key that nobody asked for is an error of finish().
class JsonFields
{
public:
    // The error string is shared by the readers of nested objects and outlives them.
    JsonFields(const QJsonValue &value, const QString &place, QString &error);

    bool has(const QString &key) const { return _object.contains(key); }
    QString place(const QString &key) const;

    void text(const QString &key, QString &target);
    // Text as ASCII bytes of this length.
    void ascii(const QString &key, QByteArray &target, qsizetype length);
    void boolean(const QString &key, bool &target);
    void number(const QString &key, int &target, int least, int most);
    // The position of the text in the choices.
    void choice(const QString &key, int &target, const QStringList &choices);
    void object(const QString &key, const std::function<void(JsonFields &)> &read);
    // An object whose keys are not known beforehand.
    void entries(const QString &key,
                 const std::function<void(const QString &name, const QJsonValue &)> &read);
    void list(const QString &key, const std::function<void(const QJsonValue &, const QString &place)> &read);
    void finish();

    void fail(const QString &place, const QString &what);
    bool failed() const { return !_error.isEmpty(); }

private:
    // Null when the key is not there or something failed before.
    bool take(const QString &key, QJsonValue &value);

    QJsonObject _object;
    QString _place;
    QString &_error;
    QSet<QString> _known;
};

} // namespace cvtamber
