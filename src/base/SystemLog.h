// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QString>

namespace cvtamber {

// The system log. Messages begin with their level word in brackets, as they are to appear: "[debug] ...".
//
// Level words: "info" for ordinary messages, "debug" for developers, "HD" for the launch banner,
// "***ERROR***". What a person named or wrote (document titles, texts, people's names) goes through masked()
// first. Thread: main thread. Implementations never fail towards the caller.
class SystemLog : public InterfaceBase
{
public:
    virtual void write(const QString &message) = 0;

    void info(const QString &message) { write(QStringLiteral("[info] ") + message); }
    void debug(const QString &message) { write(QStringLiteral("[debug] ") + message); }
    void error(const QString &message) { write(QStringLiteral("[***ERROR***] ") + message); }

    // The text itself when CVTAMBER_LOG_PRIVATE=1 was set at start, else "<hidden>".
    static QString masked(const QString &text);
};

} // namespace cvtamber
