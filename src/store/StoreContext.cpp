// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreContext.h"

#include "base/SystemLog.h"
#include "store/StoreNames.h"

namespace cvtamber {

QString loggedURL(const FileURL &url)
{
    if (url.isNil())
        return QStringLiteral("(null)");
    const QString &name = url.lastPathComponent();
    if (name.isEmpty())
        return url.path();
    const QString &shown = isStoreName(name) ? name : SystemLog::masked(name);
    const QString ending = url.isDirectory() ? QStringLiteral("/") : QString();
    return url.path().chopped(name.size()) % shown % ending;
}

void tellProblem(const StoreContext &context, StoreProblem::What what, const FileURL &url,
                 const FileResult &result)
{
    if (!result.ok())
        context.problems.tell({what, url, result.message, {}});
}

void logProblem(const StoreContext &context, StoreProblem::What what, const FileURL &url,
                const FileResult &result)
{
    if (!result.ok())
        context.log.error(result.message);
    tellProblem(context, what, url, result);
}

} // namespace cvtamber
