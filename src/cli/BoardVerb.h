// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/LiveTextVerb.h"

namespace cvtamber {

// `board`: shares the device's whiteboard, line by line.
class BoardVerb final : public LiveTextVerb
{
public:
    BoardVerb(const VerbContext &context, const VerbRequest &request)
        : LiveTextVerb(context, request, QStringLiteral("BOARD"))
    {}
};

} // namespace cvtamber
