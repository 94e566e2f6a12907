// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/InputReader.h"
#include "cli/Verb.h"

namespace cvtamber {

// What `put` and `emboss` share: a local text on its way to the device, done when the last write has been
// confirmed.
class TextUploadVerb : public Verb, public CVUploadFileDelegate
{
public:
    void run(Session &session) override;
    void interrupted() override;

    void cvUploadProgress(float fraction) override;
    void cvFileUploaded() override;

protected:
    TextUploadVerb(const VerbContext &context, const VerbRequest &request);

    // Asks the device to take the text; may fail() instead, or call it later.
    virtual void startSending(Session &session) = 0;
    // What a broken transfer leaves behind: a sentence.
    virtual QString incompleteSentence() const = 0;

    // Tells what the device does not have of the text.
    void beginUpload(Session &session);
    // As the person gave it, and from beginUpload() on as the device reads it.
    const QString &text() const { return _text; }
    int translationMode() const { return request().translate ? ForwardTranslation : PlainTransfer; }

private:
    void prepare() override;
    void take(const InputReader::Outcome &input);

    InputReader _reader;
    QString _text;
    Session *_session = nullptr;
    bool _sending = false;
};

} // namespace cvtamber
