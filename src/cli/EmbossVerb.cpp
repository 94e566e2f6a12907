// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/EmbossVerb.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

void EmbossVerb::startSending(Session &session)
{
    if (text().isEmpty()) {
        fail(ExitStatus::Done, u"The text is empty: there is nothing to emboss."_s);
        return;
    }
    beginUpload(session);
    session.device().embossString(text(), translationMode());
}

QString EmbossVerb::incompleteSentence() const
{
    return u"The embossed page may be incomplete."_s;
}

} // namespace cvtamber
