// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RemoveVerb.h"

#include "cli/DeviceNames.h"

namespace cvtamber {

void RemoveVerb::run(Session &session)
{
    session.withListing([this, &session] {
        CVBTDevice &device = session.device();
        const QString &name = request().operand;
        if (device.getSizeOfFileWithName(name) < 0) {
            fail(ExitStatus::NoSuchFile, noSuchFileSentence(name, device.files()));
            return;
        }
        const QString problem =
            unlistableNameProblem(name, device.cvKeyboardLanguage(), device.stringEncoding());
        if (!problem.isEmpty()) {
            fail(ExitStatus::WrongUsage, problem);
            return;
        }
        session.forgetListing();
        device.deleteFile(name);
        session.whenWritten([this] { finish(ExitStatus::Done); });
    });
}

} // namespace cvtamber
