// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/GradeVerb.h"

namespace cvtamber {

void GradeVerb::run(Session &session)
{
    session.device().setForwardGrade(request().grade);
    session.device().setBackwardGrade(request().grade);
    session.whenWritten([this] { finish(ExitStatus::Done); });
}

} // namespace cvtamber
