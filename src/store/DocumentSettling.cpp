// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/DocumentSettling.h"

#include "store/FileCoordinator.h"

#include <algorithm>

namespace cvtamber {

namespace {

bool isSettled(const StoreContext &context, const Document &document)
{
    const bool isClosed = (document.documentState() & Document::Closed) != 0;
    return isClosed && !document.hasUnsavedChanges() && !context.coordinator.isBusy(document.fileURL());
}

// Several closings that end together.
struct Settling
{
    size_t remaining = 0;
    FileResult first;
    std::function<void(const FileResult &)> then;

    void closed(const Document &document, bool success)
    {
        if (!success && first.ok()) {
            first = document.lastResult();
            if (first.ok())
                first.outcome = FileResult::Outcome::Failed;
        }
        if (--remaining == 0)
            then(first);
    }
};

} // namespace

void abandonDocument(const StoreContext &context, const std::shared_ptr<Document> &document,
                     std::function<void()> then)
{
    if (isSettled(context, *document)) {
        then();
        return;
    }
    document->updateChangeCount(Document::ChangeKind::Cleared);
    document->closeWithCompletionHandler([done = std::move(then)](bool) { done(); });
}

void settleDocuments(const StoreContext &context, const DocumentGroup &documents,
                     std::function<void(const FileResult &)> then)
{
    DocumentGroup open;
    std::copy_if(documents.begin(), documents.end(), std::back_inserter(open),
                 [&](const auto &document) { return !isSettled(context, *document); });
    if (open.empty()) {
        then({});
        return;
    }
    const auto settling = std::make_shared<Settling>(Settling{open.size(), {}, std::move(then)});
    for (const auto &document : open)
        document->closeWithCompletionHandler([settling, weak = std::weak_ptr<Document>(document)](bool ok) {
            // The document lives until it has been closed.
            if (const auto closing = weak.lock())
                settling->closed(*closing, ok);
        });
}

} // namespace cvtamber
