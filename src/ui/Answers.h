// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ActionSheet.h"
#include "ui/AlertView.h"

#include <functional>
#include <memory>

namespace cvtamber {

// Whoever asks a question, kept alive while the answer runs; null when there is nobody left to hear it.
using Asker = std::function<std::shared_ptr<const void>()>;

// The same question with a didDismiss that runs once, and only while there is an asker: a button that is hit twice,
// or after the asking screen has gone, does nothing.
AlertView answeredOnce(AlertView alert, Asker asker);
ActionSheet answeredOnce(ActionSheet sheet, Asker asker);

} // namespace cvtamber
