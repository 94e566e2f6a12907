// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QStringBuilder>
#include <QStringList>
#include <QTranslator>

namespace cvtamber {

// Makes formats of keys that are numbers, while it lives: "3.1 %@" for "3.1". Every other key is its own text.
class FormatTexts final : public QTranslator
{
public:
    explicit FormatTexts(const QStringList &formats)
        : _formats(formats)
    {
        QCoreApplication::installTranslator(this);
    }
    ~FormatTexts() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *key, const char *, int) const override
    {
        const QString text = QString::fromUtf8(key);
        return _formats.contains(text) ? QString(text % u" %@") : QString();
    }

private:
    QStringList _formats;
};

} // namespace cvtamber
