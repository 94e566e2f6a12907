// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/InterfaceBase.h"
#include "store/FileResult.h"
#include "store/MetadataQuery.h"

#include <memory>

namespace cvtamber {

// User defaults: the folder that the person has chosen, an absolute path; and the one in which a store has been opened.
inline constexpr QStringView CloudFolderDefault = u"cloudFolder";
inline constexpr QStringView CloudStoreDefault = u"cloudStore";

// A file beside the registries of a store in the cloud. Its contents are always the same, so that two machines may make it
// at the same time.
inline constexpr QStringView StoreMarkName = u".cvtamber.store";

// The person's cloud document container. Owner: made at start-up, outlives its users.
class CloudContainer : public InterfaceBase
{
public:
    // The container's directory; nil when there is none to be had. May take long: start-up asks from the
    // background. Any thread.
    virtual FileURL url() const = 0;
    // The URL lies in the container, or is its directory. Main thread.
    virtual bool isUbiquitousItem(const FileURL &url) const = 0;
    // Asks for the bytes behind a placeholder; that they came is told by the metadata query. An item that is
    // here already is fine. Failed says why nothing can be asked. Main thread.
    virtual FileResult startDownloading(const FileURL &url) = 0;
    // Main thread.
    virtual std::unique_ptr<MetadataQuery> makeQuery() = 0;
    // A store has been opened in it. A container that may be unmounted is not there from now on where that store is not.
    // Main thread.
    virtual void storeOpened() {}
};

} // namespace cvtamber
