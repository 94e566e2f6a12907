// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/AlertView.h"

namespace cvtamber {

// What the keys do, for a person who asks with F1. The README has the same in a table.
AlertView keysHelp();

} // namespace cvtamber
