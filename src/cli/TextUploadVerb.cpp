// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TextUploadVerb.h"

#include "base/VisibleText.h"
#include "cli/DeviceSentences.h"
#include "cli/Utf8Text.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

TextUploadVerb::TextUploadVerb(const VerbContext &context, const VerbRequest &request)
    : Verb(context, request)
    , _reader(context.console)
{}

void TextUploadVerb::prepare()
{
    _reader.read(request().operand, [this](const InputReader::Outcome &input) { take(input); });
}

void TextUploadVerb::take(const InputReader::Outcome &input)
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
    _text = read.text;
    const QString problem = request().force ? QString() : deviceCommandProblem(_text);
    if (!problem.isEmpty())
        fail(ExitStatus::Failed, problem);
    else
        ready();
}

void TextUploadVerb::run(Session &session)
{
    _session = &session;
    startSending(session);
}

// The last step before the text goes out: from here on a broken link leaves something behind.
void TextUploadVerb::beginUpload(Session &session)
{
    _sending = true;
    const CVBTDevice &device = session.device();
    const PlainText plain = plainForDevice(_text, device.cvKeyboardLanguage(), device.cvLanguage());
    _text = plain.text;
    if (plain.lost > 0)
        console().writeMessage(lostCharactersSentence(plain));
    session.device().setCvUploadDelegate(std::static_pointer_cast<TextUploadVerb>(shared_from_this()));
}

void TextUploadVerb::interrupted()
{
    if (_sending && !isOver())
        console().writeMessage(incompleteSentence());
}

void TextUploadVerb::cvUploadProgress(float fraction)
{
    if (!isOver())
        console().showProgress(shownProgress(fraction));
}

void TextUploadVerb::cvFileUploaded()
{
    if (!isOver())
        _session->whenWritten([this] { finish(ExitStatus::Done); });
}

} // namespace cvtamber
