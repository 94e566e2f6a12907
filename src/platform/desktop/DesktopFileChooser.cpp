// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/DesktopFileChooser.h"

#include "platform/desktop/FileUris.h"
#include "platform/desktop/PortalRequest.h"

#include <tuple>
#include <utility>

namespace cvtamber {

using namespace Qt::StringLiterals;

DesktopFileChooser::DesktopFileChooser(const QDBusConnection &bus)
    : _bus(bus)
{}

void DesktopFileChooser::choose(const QString &title, std::function<void(const Choice &choice)> chosen)
{
    if (std::exchange(_isOpen, true))
        return;
    PortalRequest::start(
        _bus, {u"FileChooser"_s, u"OpenFile"_s, {QString(), title}, {{u"multiple"_s, true}}},
        [this, chosen = std::move(chosen)](PortalRequest::Outcome outcome, const QVariantMap &results) {
            _isOpen = false;
            Choice choice;
            choice.hasFailed = outcome == PortalRequest::Outcome::Failed;
            if (outcome == PortalRequest::Outcome::Done)
                std::tie(choice.paths, choice.others) = pathsOfUris(results.value(u"uris"_s).toStringList());
            chosen(choice);
        },
        this);
}

} // namespace cvtamber
