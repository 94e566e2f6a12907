// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/EncodeVerb.h"

#include "cli/Utf8Text.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

void EncodeVerb::prepare()
{
    _reader.read(u"-"_s, [this](const InputReader::Outcome &input) { encode(input); });
}

void EncodeVerb::encode(const InputReader::Outcome &input)
{
    if (!input.error.isEmpty()) {
        fail(input.status, input.error);
        return;
    }
    const Utf8Text read = readUtf8(input.bytes);
    if (!read.error.isEmpty()) {
        fail(ExitStatus::Failed, read.error);
        return;
    }
    const EncodedText encoded = TextCodec::encode(read.text, request().language);
    if (encoded.replaced > 0)
        console().writeMessage(
            u"Characters that this language does not have became \"?\" or lost an accent: %1."_s.arg(
                encoded.replaced));
    finish(console().writeOutput(encoded.bytes) ? ExitStatus::Done : ExitStatus::Failed);
}

} // namespace cvtamber
