// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/InputReader.h"
#include "cli/Verb.h"

namespace cvtamber {

// `encode`: UTF-8 from standard input to the device's bytes on standard output.
class EncodeVerb final : public Verb
{
public:
    EncodeVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
        , _reader(context.console)
    {}
    void run(Session &) override {}

private:
    void prepare() override;
    void encode(const InputReader::Outcome &input);

    InputReader _reader;
};

} // namespace cvtamber
