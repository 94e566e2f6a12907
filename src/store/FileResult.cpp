// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/FileResult.h"

#include "base/ErrorText.h"

namespace cvtamber {

using Outcome = FileResult::Outcome;

bool saysMissing(const std::error_code &error)
{
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

FileResult resultOf(const std::error_code &error)
{
    if (!error)
        return {};
    return {error == std::errc::file_exists ? Outcome::AlreadyExists : Outcome::Failed, errorText(error)};
}

FileResult resultOfFinding(const std::error_code &error)
{
    if (saysMissing(error))
        return {Outcome::Missing, errorText(error)};
    return resultOf(error);
}

FileResult notSynced(const std::error_code &error)
{
    return failedBecause(QStringLiteral("it is in place, but its folder could not be synced: ") +
                         errorText(error));
}

} // namespace cvtamber
