// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileResult.h"
#include "store/MetadataQuery.h"

#include <memory>

namespace cvtamber {

// The person's cloud document container. Owner: made at start-up, outlives its users.
class CloudContainer
{
public:
    CloudContainer() = default;
    CloudContainer(const CloudContainer &) = delete;
    CloudContainer &operator=(const CloudContainer &) = delete;
    virtual ~CloudContainer() = default;

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
};

} // namespace cvtamber
