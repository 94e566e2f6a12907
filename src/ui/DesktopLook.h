// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace cvtamber {

// How the desktop wants programs to look, as far as it says so.
struct DesktopLook
{
    // Nothing where it leaves that to the program.
    std::optional<bool> dark;
    bool highContrast = false;
    bool reducedMotion = false;

    bool operator==(const DesktopLook &) const = default;
};

} // namespace cvtamber
