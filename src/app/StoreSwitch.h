// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/StoreContext.h"

#include <memory>

namespace cvtamber {

class TamberStorage;

// The one document store of the program; null until it has been located, and where it cannot be opened.
extern std::shared_ptr<TamberStorage> gTamberStorage;

// The user default that says whether the documents are kept in the cloud folder.
inline const QString CloudOn = QStringLiteral("iCloudOn");

// Makes gTamberStorage at that place and registers it with MGlobals; null for a place that cannot be used. Main thread.
void makeStorage(StoreContext &context, const FileURL &url);

// Moves gTamberStorage to that place, or makes it when there is none. A place that cannot be used leaves no store, so that
// nothing is written to where it will not be found. Main thread.
void switchStorage(StoreContext &context, const FileURL &url);

// Writes what is open, drops the store, and takes it back from MGlobals. Main thread.
void closeStorage();

// Moves every user's directory of the local place into the cloud container's, each by itself and side by side; a name that is
// in use there stays where it is. Nothing when either place is nil. What fails is logged and told to the store's
// observer. Main thread; the moves are done in the background.
void moveUsersToCloud(StoreContext &context, const FileURL &local, const FileURL &cloud);

} // namespace cvtamber
