// SPDX-License-Identifier: GPL-3.0-or-later
#include "device/CVDeviceDelegates.h"

#include <algorithm>
#include <cmath>

namespace cvtamber {

float shownProgress(float fraction)
{
    return std::isnan(fraction) ? 0.0F : std::clamp(fraction, 0.0F, 1.0F);
}

} // namespace cvtamber
