// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/JsonFields.h"

#include "base/VisibleText.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace cvtamber {

JsonFields::JsonFields(const QJsonValue &value, const QString &place, QString &error)
    : _object(value.toObject())
    , _place(place)
    , _error(error)
{
    if (!value.isObject())
        fail(place, QStringLiteral("must be an object"));
}

QString JsonFields::place(const QString &key) const
{
    return _place.isEmpty() ? key : _place + QLatin1Char('.') + key;
}

void JsonFields::fail(const QString &place, const QString &what)
{
    if (!_error.isEmpty())
        return;
    _error = (place.isEmpty() ? QStringLiteral("the profile") : place) + QStringLiteral(": ") + what +
             QLatin1Char('.');
}

bool JsonFields::take(const QString &key, QJsonValue &value)
{
    _known.insert(key);
    value = _object.value(key);
    return !value.isUndefined() && !failed();
}

void JsonFields::text(const QString &key, QString &target)
{
    QJsonValue value;
    if (!take(key, value))
        return;
    if (value.isString())
        target = value.toString();
    else
        fail(place(key), QStringLiteral("must be a text in quotation marks"));
}

void JsonFields::ascii(const QString &key, QByteArray &target, qsizetype length)
{
    QString value;
    text(key, value);
    if (!has(key) || failed())
        return;
    const bool printable = std::all_of(value.cbegin(), value.cend(), [](QChar character) {
        return character >= QLatin1Char(' ') && character <= QLatin1Char('~');
    });
    if (value.size() != length || !printable)
        fail(place(key), QStringLiteral("must be %1 ASCII characters").arg(length));
    else
        target = value.toLatin1();
}

void JsonFields::boolean(const QString &key, bool &target)
{
    QJsonValue value;
    if (!take(key, value))
        return;
    if (value.isBool())
        target = value.toBool();
    else
        fail(place(key), QStringLiteral("must be true or false"));
}

void JsonFields::number(const QString &key, int &target, int least, int most)
{
    QJsonValue value;
    if (!take(key, value))
        return;
    const double number = value.toDouble(std::nan(""));
    if (number >= least && number <= most && number == std::floor(number))
        target = static_cast<int>(number);
    else
        fail(place(key), QStringLiteral("must be a whole number from %1 to %2").arg(least).arg(most));
}

void JsonFields::choice(const QString &key, int &target, const QStringList &choices)
{
    QJsonValue value;
    if (!take(key, value))
        return;
    const qsizetype index = value.isString() ? choices.indexOf(value.toString()) : -1;
    if (index >= 0)
        target = static_cast<int>(index);
    else
        fail(place(key), QStringLiteral("must be one of ") + choices.join(QStringLiteral(", ")));
}

void JsonFields::object(const QString &key, const std::function<void(JsonFields &)> &read)
{
    QJsonValue value;
    if (!take(key, value))
        return;
    JsonFields fields(value, place(key), _error);
    read(fields);
    fields.finish();
}

void JsonFields::entries(const QString &key,
                         const std::function<void(const QString &, const QJsonValue &)> &read)
{
    QJsonValue value;
    if (!take(key, value))
        return;
    if (!value.isObject())
        fail(place(key), QStringLiteral("must be an object"));
    const QJsonObject object = value.toObject();
    for (auto entry = object.constBegin(); entry != object.constEnd() && !failed(); ++entry)
        read(entry.key(), entry.value());
}

void JsonFields::list(const QString &key,
                      const std::function<void(const QJsonValue &, const QString &)> &read)
{
    QJsonValue value;
    if (!take(key, value))
        return;
    if (!value.isArray())
        fail(place(key), QStringLiteral("must be a list"));
    const QJsonArray array = value.toArray();
    for (qsizetype i = 0; i < array.size() && !failed(); ++i)
        read(array[i], QStringLiteral("%1[%2]").arg(place(key)).arg(i));
}

void JsonFields::finish()
{
    for (auto entry = _object.constBegin(); entry != _object.constEnd(); ++entry) {
        if (!_known.contains(entry.key()))
            fail(place(visibleText(entry.key())), QStringLiteral("is not a known key"));
    }
}

} // namespace cvtamber
