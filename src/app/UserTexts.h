// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>

namespace cvtamber {

class TamberUser;

// All names of a user, as a confirmation says them: "Ann Lee  (Mrs L)", with two spaces where a name comes before the
// parenthesis.
QString userFullDescription(const TamberUser &user);

// What a screen reader says of a row whose text others have as well: with the detail and the number of documents behind it.
QString spokenApart(const QString &text, const QString &detail, qsizetype documents);

// Whether the user's registry still lists the user; false for null.
bool isListedUser(const std::shared_ptr<TamberUser> &user);

} // namespace cvtamber
