// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PutVerb.h"

#include "base/VisibleText.h"
#include "cli/DeviceSentences.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

void PutVerb::startSending(Session &session)
{
    session.withListing([this, &session] { store(session); });
}

void PutVerb::store(Session &session)
{
    CVBTDevice &device = session.device();
    const QString &name = request().as;
    const QString problem = unlistableNameProblem(name, device.cvKeyboardLanguage(), device.stringEncoding());
    if (!problem.isEmpty()) {
        fail(ExitStatus::WrongUsage, problem);
        return;
    }
    if (device.fileExists(name) && !request().force) {
        fail(ExitStatus::Failed,
             u"There is a file %1 on the device already. --force replaces it."_s.arg(visibleText(name)));
        return;
    }
    session.forgetListing();
    beginUpload(session);
    const auto files = device.files();
    for (const CVFileData &file : files) {
        if (file.name().compare(name, Qt::CaseInsensitive) == 0)
            device.deleteFile(file.name());
    }
    device.sendFileWithName(name, text(), translationMode());
}

QString PutVerb::incompleteSentence() const
{
    return u"The file %1 on the device may be incomplete: put the whole file again, or delete it with rm."_s
        .arg(visibleText(request().as));
}

} // namespace cvtamber
