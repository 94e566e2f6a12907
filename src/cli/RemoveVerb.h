// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Verb.h"

namespace cvtamber {

// `rm`: deletes one file on the device.
class RemoveVerb final : public Verb
{
public:
    RemoveVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
    {}
    void run(Session &session) override;
};

} // namespace cvtamber
