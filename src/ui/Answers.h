// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ActionSheet.h"
#include "ui/AlertView.h"

#include <functional>

namespace cvtamber {

// The same question with a didDismiss that runs once, and only while `isAsking` says yes: a button that is hit twice,
// or after the asking object has gone, does nothing.
AlertView answeredOnce(AlertView alert, std::function<bool()> isAsking);
ActionSheet answeredOnce(ActionSheet sheet, std::function<bool()> isAsking);

} // namespace cvtamber
