// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Verb.h"

namespace cvtamber {

// `get`: fetches one file, to standard output or whole into a file.
class GetVerb final : public Verb, public CVDownloadFileDelegate
{
public:
    GetVerb(const VerbContext &context, const VerbRequest &request)
        : Verb(context, request)
    {}
    void run(Session &session) override;

    void cvDownloadProgress(float fraction) override;
    void cvFileDownloadOutcome(const FetchOutcome &outcome) override { _outcome = outcome; }
    void cvFileDownloaded(const QString &text) override;

private:
    void prepare() override;
    bool writesFile() const;
    void fetch(CVBTDevice &device);
    void warn();
    bool save(const QString &text);
    bool saveFile(const QByteArray &bytes);

    FetchOutcome _outcome;
};

} // namespace cvtamber
