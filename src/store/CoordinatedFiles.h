// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileResult.h"
#include "store/StoreContext.h"
#include "store/StoreProblems.h"

#include <functional>

namespace cvtamber {

// Removing and moving in the background with the log lines that go with it. The completion runs once, from the
// loop, and may be empty; telling StoreProblems is the caller's business, who knows what was meant. Main thread.
using FileCompletion = std::function<void(const FileResult &)>;
void coordinatedRemoveItemAtURL(StoreContext &context, const FileURL &url, FileCompletion completion);
void coordinatedMoveItemAtURL(StoreContext &context, const FileURL &from, const FileURL &to,
                              FileCompletion completion);

// Tells StoreProblems what failed; nothing when it did not.
void tellProblem(const StoreContext &context, StoreProblem::What what, const FileURL &url,
                 const FileResult &result);

} // namespace cvtamber
