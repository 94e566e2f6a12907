// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Document.h"

#include <functional>
#include <memory>
#include <vector>

namespace cvtamber {

// Before a document's file is moved or removed the document must have nothing left to write, or its next
// autosave would make the old file again. A document that is closed, holds nothing unsaved and whose file nobody
// is working on is settled. Main thread.

using DocumentGroup = std::vector<std::shared_ptr<Document>>;

// For a removal: drops what is not saved and closes the document, then calls `then`; at once when it is settled.
void abandonDocument(const StoreContext &context, const std::shared_ptr<Document> &document,
                     std::function<void()> then);

// For a move: saves and closes those that are not settled, then calls `then` once with Ok, or with the
// first failure: then that document stays open with its changes, and nothing may be moved. At once when all are
// settled.
void settleDocuments(const StoreContext &context, const DocumentGroup &documents,
                     std::function<void(const FileResult &)> then);

} // namespace cvtamber
