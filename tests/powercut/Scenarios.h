// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "powercut/TreeImage.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "store/TamberUsers.h"
#include "support/StoreListing.h"
#include "support/StoreRig.h"

#include <functional>
#include <memory>
#include <vector>

namespace cvtamber {

// A store opened over what lies in the rig's root.
class OpenStore
{
public:
    explicit OpenStore(StoreRig &rig);
    OpenStore(StoreRig &rig, const FileURL &root);
    OpenStore(const OpenStore &) = delete;
    OpenStore &operator=(const OpenStore &) = delete;
    ~OpenStore();

    // Two active users, one of them with a folder, and an archived one.
    static TreeImage initialTree();
    // It is the directory of a user or of a folder of that tree.
    static bool knows(const QString &directoryName);

    std::shared_ptr<TamberUser> anna() const;
    std::shared_ptr<TamberUser> ben() const;
    std::shared_ptr<TamberUser> archived() const;
    std::shared_ptr<TamberDataFolder> folderOfAnna() const;
    std::shared_ptr<TamberDocument> letterOfAnna() const;

    StoreRig &rig;
    std::shared_ptr<TamberStorage> storage;
};

// What may be found while an operation is not done.
enum class Between {
    // The old state or the new one.
    OneOrTheOther,
    // Also the new things beside all of the old ones.
    BothTogether,
    // Any part of the old state that holds the new one; also after it was done.
    PartlyGone,
};

// One operation of the store, to be cut short.
struct Scenario
{
    using Done = std::function<void()>;

    const char *name;
    Between between;
    // Calls done when the store says so; what is done without a word is done when the background is at rest.
    std::function<void(OpenStore &, const Done &)> act;
    // Makes the state after it of the state before it. A new directory is called NEW.
    std::function<void(StoreListing &)> change;
    std::function<void(OpenStore &)> prepare = [](OpenStore &) {};
    // One more state that may be found between, made of the state before.
    std::function<void(StoreListing &)> alsoFound = [](StoreListing &) {};
    // The archived users are on a file system of their own.
    bool isBetweenFileSystems = false;
    // The users go to the second store: what counts is that each is in one of the two.
    bool isToSecondStore = false;
};

// The directory of a second store, below the first one's root.
inline constexpr QStringView SecondStore = u"Second";

const std::vector<Scenario> &scenarios();

} // namespace cvtamber
