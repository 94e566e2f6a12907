// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"

#include <QString>

namespace cvtamber {

// Where the programs keep things. Every answer is an absolute path without a slash at its end.
//
// A folder is made when it is asked for; where that fails the path comes back all the same and opening a file
// in it gives the reason. Thread: main thread. Owner: made at start-up, outlives whoever holds it.
class Locations : public InterfaceBase
{
public:
    // Documents and the application log: the application's own folder, never the person's Documents.
    virtual QString documentsFolder() = 0;
    // What may be lost without harm to a document, kept from run to run.
    virtual QString stateFolder() = 0;
    // Readable by this person alone and removed with this object. Null when none can be made: a folder that
    // others can write to is no substitute.
    virtual QString temporaryFolder() = 0;
};

} // namespace cvtamber
