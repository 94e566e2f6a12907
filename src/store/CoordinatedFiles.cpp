// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CoordinatedFiles.h"

#include "base/SystemLog.h"
#include "store/FileCoordinator.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

void logFailure(const StoreContext &context, const FileURL &url, const FileResult &result)
{
    if (!result.ok())
        context.log.error(loggedURL(url) % u" - "_s % result.message);
}

} // namespace

void coordinatedRemoveItemAtURL(StoreContext &context, const FileURL &url, FileCompletion completion)
{
    context.log.info(u"[fm removeItemAtURL:"_s % loggedURL(url) % u']');
    context.coordinator.remove(url, [&context, url, done = std::move(completion)](const FileResult &result) {
        logFailure(context, url, result);
        if (done)
            done(result);
    });
}

void coordinatedMoveItemAtURL(StoreContext &context, const FileURL &from, const FileURL &to,
                              FileCompletion completion)
{
    context.log.info(loggedURL(from));
    context.log.info(loggedURL(to));
    context.coordinator.move(from, to,
                             [&context, from, done = std::move(completion)](const FileResult &result) {
                                 logFailure(context, from, result);
                                 if (done)
                                     done(result);
                             });
}

void tellProblem(const StoreContext &context, StoreProblem::What what, const FileURL &url,
                 const FileResult &result)
{
    if (!result.ok())
        context.problems.tell({what, url, result.message, {}});
}

} // namespace cvtamber
