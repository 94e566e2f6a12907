// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "text/TextCodec.h"

#include <functional>

namespace cvtamber {

// What may be a file's name on the device. Pure functions; any thread.

enum class NameFault {
    None,
    Empty,
    NotText, // a control character, or what a byte that is no text was read as
    Space,   // a listing cuts the name there
    Brace,
    Slash,
    Unlistable, // a listing would show other characters
};

// What the device could not list again or would take for commands, whatever its language.
NameFault nameFault(const QString &name);

// The same for a device with this keyboard language and this code page for its listings: a listing is decoded by the
// bare code page, so a name that the device's own codes change could never be asked for again.
NameFault nameFault(const QString &name, int keyboardLanguage, StringEncoding encoding);

// The command that stores a translated text under this name would be the one that ends such a text.
bool endsTranslatedStore(const QString &name);

// A name for a file on that device, near the title, without a fault and not taken: "LETTER2" for "LETTER 2".
QString suggestedDeviceName(const QString &title, int keyboardLanguage, StringEncoding encoding,
                            const std::function<bool(const QString &name)> &isTaken);

} // namespace cvtamber
