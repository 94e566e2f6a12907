// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/TextUploadVerb.h"

namespace cvtamber {

// `emboss`: sends a text to the device's embosser.
class EmbossVerb final : public TextUploadVerb
{
public:
    EmbossVerb(const VerbContext &context, const VerbRequest &request)
        : TextUploadVerb(context, request)
    {}

private:
    void startSending(Session &session) override;
    QString incompleteSentence() const override;
};

} // namespace cvtamber
