// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Verb.h"

namespace cvtamber {

// `grade`: sets the grade of both directions and waits for the confirmation.
class GradeVerb final : public Verb
{
public:
    GradeVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
    {}
    void run(Session &session) override;
};

} // namespace cvtamber
