// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Verb.h"

namespace cvtamber {

// `info`: who the device is and how it is set up.
class InfoVerb final : public Verb
{
public:
    InfoVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
    {}
    void run(Session &session) override;

private:
    static QByteArray json(const CVBTDevice &device);
    static QByteArray lines(const CVBTDevice &device);
};

} // namespace cvtamber
