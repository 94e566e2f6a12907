// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UserTexts.h"

#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "ui/Texts.h"

#include <algorithm>

namespace cvtamber {

QString userFullDescription(const TamberUser &user)
{
    QString text = user.firstName();
    const auto append = [&text](const QString &part) {
        if (!text.isEmpty())
            text += u' ';
        text += part;
    };
    if (!user.lastName().isEmpty())
        append(user.lastName());
    if (!user.displayName().isEmpty())
        append(u" (" + user.displayName() + u')');
    return text;
}

QString spokenApart(const QString &text, const QString &detail, qsizetype documents)
{
    QStringList parts{text};
    if (!detail.isEmpty())
        parts.append(detail);
    parts.append(documents == 1 ? localized("1 document")
                                : localizedFormat("%@ documents", QString::number(documents)));
    return parts.join(QStringLiteral(", "));
}

bool isListedUser(const std::shared_ptr<TamberUser> &user)
{
    const auto registry = user ? user->users() : nullptr;
    return registry &&
           std::find(registry->users().begin(), registry->users().end(), user) != registry->users().end();
}

} // namespace cvtamber
