// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Locations.h"

#include <QTemporaryDir>

#include <optional>

namespace cvtamber {

// The places of the operating system: on Linux and the like $XDG_DATA_HOME/cvtamber/Documents and
// $XDG_STATE_HOME/cvtamber (~/.local/share and ~/.local/state where a variable is unset or not absolute),
// elsewhere below Qt's generic data location. Folders that it makes are open to this person alone.
class StandardLocations final : public Locations
{
public:
    QString documentsFolder() override;
    QString stateFolder() override;
    QString temporaryFolder() override;

private:
    std::optional<QTemporaryDir> _temporary;
};

} // namespace cvtamber
