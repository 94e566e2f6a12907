// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RemoveVerb.h"

namespace cvtamber {

void RemoveVerb::run(Session &session)
{
    session.withListing([this, &session] {
        CVBTDevice &device = session.device();
        if (!isListed(device))
            return;
        session.forgetListing();
        device.deleteFile(request().operand);
        session.whenWritten([this] { finish(ExitStatus::Done); });
    });
}

} // namespace cvtamber
