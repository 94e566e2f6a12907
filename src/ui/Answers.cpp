// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Answers.h"

#include <utility>

namespace cvtamber {

namespace {

// The copies of a question share what they know of its answer.
template<typename... Arguments>
std::function<void(Arguments...)> once(std::function<void(Arguments...)> answer, Asker asker)
{
    auto isAnswered = std::make_shared<bool>(false);
    return [answer = std::move(answer), asker = std::move(asker), isAnswered](Arguments... arguments) {
        if (std::exchange(*isAnswered, true) || !answer)
            return;
        const auto alive = asker();
        if (alive)
            answer(arguments...);
    };
}

} // namespace

AlertView answeredOnce(AlertView alert, Asker asker)
{
    alert.didDismiss = once(std::move(alert.didDismiss), std::move(asker));
    return alert;
}

ActionSheet answeredOnce(ActionSheet sheet, Asker asker)
{
    sheet.didDismiss = once(std::move(sheet.didDismiss), std::move(asker));
    return sheet;
}

} // namespace cvtamber
