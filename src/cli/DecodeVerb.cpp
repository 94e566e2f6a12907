// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DecodeVerb.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

void DecodeVerb::prepare()
{
    _reader.read(u"-"_s, [this](const InputReader::Outcome &input) { decode(input); });
}

void DecodeVerb::decode(const InputReader::Outcome &input)
{
    if (!input.error.isEmpty()) {
        fail(input.status, input.error);
        return;
    }
    const DecodedText decoded = TextCodec::decode(input.bytes, request().language);
    if (decoded.undefined > 0)
        console().writeMessage(
            u"Bytes that are no text in this language became U+FFFD: %1."_s.arg(decoded.undefined));
    finish(console().writeOutput(decoded.text.toUtf8()) ? ExitStatus::Done : ExitStatus::Failed);
}

} // namespace cvtamber
