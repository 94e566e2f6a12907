// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/InputReader.h"
#include "cli/Verb.h"

namespace cvtamber {

// `batch`: verbs, one a line, over one connection. All lines are checked before the first one runs; the
// first that fails ends the batch with its status.
class BatchVerb final : public Verb
{
public:
    BatchVerb(const VerbContext &context, const VerbRequest &request);
    void run(Session &session) override;
    void interrupted() override;

private:
    struct Entry
    {
        qsizetype line;
        VerbRequest request;
    };

    void prepare() override;
    void take(const InputReader::Outcome &input);
    // A sentence; empty when the line is good.
    QString addLine(qsizetype number, const QString &line);
    void runNext();
    void entryFinished(ExitStatus status);

    InputReader _reader;
    bool _inputUsed;
    QList<Entry> _entries;
    qsizetype _next = 0;
    VerbPtr _current;
    Session *_session = nullptr;
};

} // namespace cvtamber
