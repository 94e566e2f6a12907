// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Verb.h"

namespace cvtamber {

// `ls`: the files on the device, in its own order.
class ListVerb final : public Verb
{
public:
    ListVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
    {}
    void run(Session &session) override;
};

} // namespace cvtamber
