// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/LineSplitter.h"
#include "cli/Verb.h"

namespace cvtamber {

// `pinyin`: each line of standard input as the chat with a Chinese device would send it, without the closing zero;
// with --to-marks, as it would show it. A line that is no UTF-8 is told and left out.
class PinyinVerb final : public Verb
{
public:
    PinyinVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
    {}
    ~PinyinVerb() override;
    void run(Session &) override {}

private:
    void prepare() override;
    void take(const QByteArray &bytes, const QString &error);
    // With its line end; empty for what is no text.
    QByteArray converted(const QByteArray &line);

    LineSplitter _input;
    qsizetype _lineNumber = 0;
    bool _isReading = false;
    ExitStatus _status = ExitStatus::Done;
};

} // namespace cvtamber
