// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "store/FileURL.h"

#include <QString>

#include <functional>
#include <map>
#include <memory>

namespace cvtamber {

// What failed in the store, for the person who can act on it.
struct StoreProblem
{
    enum class What {
        Open,
        Save,
        // A document was saved, and the version of another program stands beside it: see `kept`.
        KeptOtherVersion,
        Delete,
        Rename,
        Move,
        // A folder or a user's directory could not be made.
        Create,
        // A directory could not be read, so its content is not all listed.
        List,
        // A directory without a user's record went to the trash.
        MovedToTrash,
        // A user's directory without a record holds documents and could not be put into the trash.
        NotMovedToTrash,
        Download,
    };

    What what = What::Open;
    // The document, folder or user's directory.
    FileURL url;
    // A sentence part: "no space left on device". Empty when there is nothing to explain.
    QString why;
    FileURL kept;
};

class StoreProblemObserver : public InterfaceBase
{
public:
    virtual void storeProblem(const StoreProblem &problem) = 0;
};

// Something that a person has written and that is not on the disk yet because a save has failed.
struct UnsavedItem
{
    // Tells whether it is saved now.
    using TryAgain = std::function<void(std::function<void(bool isSaved)> done)>;

    FileURL url;
    QString why;
    TryAgain tryAgain;
};

// Hands each problem to the one observer; without one it is only dropped, since the log has it already. And knows what
// is not saved, so that the end of the program can ask. Its owners try again by themselves.
// Thread: main thread. Owner: made at start-up, outlives the store. The observer is not kept alive.
class StoreProblems
{
public:
    using Unsaved = std::map<const void *, UnsavedItem>;

    // The owner is only compared.
    void keepUnsaved(const void *owner, UnsavedItem item)
    {
        _unsaved.insert_or_assign(owner, std::move(item));
    }
    void forgetUnsaved(const void *owner) { _unsaved.erase(owner); }
    const Unsaved &unsaved() const { return _unsaved; }
    // Tries all of it again. `tried` runs once, when the last has ended.
    void saveUnsaved(std::function<void()> tried) const;

    void setObserver(std::weak_ptr<StoreProblemObserver> observer) { _observer = std::move(observer); }
    void tell(const StoreProblem &problem) const
    {
        if (const auto observer = _observer.lock())
            observer->storeProblem(problem);
    }

private:
    std::weak_ptr<StoreProblemObserver> _observer;
    Unsaved _unsaved;
};

inline void StoreProblems::saveUnsaved(std::function<void()> tried) const
{
    // The list changes meanwhile.
    const Unsaved items = _unsaved;
    const auto remaining = std::make_shared<size_t>(items.size());
    for (const auto &[owner, item] : items)
        item.tryAgain([remaining, tried](bool) {
            if (--*remaining == 0)
                tried();
        });
}

} // namespace cvtamber
