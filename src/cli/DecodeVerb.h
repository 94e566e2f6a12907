// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/InputReader.h"
#include "cli/Verb.h"

namespace cvtamber {

// `decode`: the device's bytes from standard input to UTF-8 on standard output.
class DecodeVerb final : public Verb
{
public:
    DecodeVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
        , _reader(context.console)
    {}
    void run(Session &) override {}

private:
    void prepare() override;
    void decode(const InputReader::Outcome &input);

    InputReader _reader;
};

} // namespace cvtamber
