// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cvtamber {

// How a file is to be translated on its way.
enum TranslationMode : int {
    PlainTransfer = 0,
    BackTranslation = 1,    // fetch only: braille into print
    ForwardTranslation = 2, // store and emboss: print into braille
};

} // namespace cvtamber
