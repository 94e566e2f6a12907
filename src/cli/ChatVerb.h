// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/LiveTextVerb.h"

namespace cvtamber {

// `chat`: exchanges lines in the device's chat mode.
class ChatVerb final : public LiveTextVerb
{
public:
    ChatVerb(const VerbContext &context, const VerbRequest &request)
        : LiveTextVerb(context, request, QStringLiteral("CHAT"))
    {}
};

} // namespace cvtamber
