// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/TextUploadVerb.h"

namespace cvtamber {

// `put`: stores a text as a file on the device. A file of that name, in any letter case, is left alone
// unless forced; then it is deleted first, because the device would keep both.
class PutVerb final : public TextUploadVerb
{
public:
    PutVerb(const VerbContext &context, const VerbRequest &request)
        : TextUploadVerb(context, request)
    {}

private:
    void startSending(Session &session) override;
    QString incompleteSentence() const override;
    void store(Session &session);
};

} // namespace cvtamber
