// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/LiveTextVerb.h"

namespace cvtamber {

// `chat`: exchanges lines in the device's chat mode. With a device whose language is Chinese, Hanzi go out as pinyin with
// tone symbols, and those come back as marks.
class ChatVerb final : public LiveTextVerb
{
public:
    ChatVerb(const VerbContext &context, const VerbRequest &request)
        : LiveTextVerb(context, request, QStringLiteral("CHAT"))
    {}

private:
    PlainText outgoing(const QString &line, const Languages &languages) const override;
    QString incoming(const QString &line, int language) const override;
};

} // namespace cvtamber
