// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberFilesAndFoldersContainer.h"
#include "support/FaultyFileOperations.h"
#include "support/StoreRig.h"

namespace cvtamber {

class FixedLocation final : public TamberDiskLocation
{
public:
    explicit FixedLocation(FileURL url)
        : _url(std::move(url))
    {}
    FileURL url() const override { return _url; }

private:
    FileURL _url;
};

// Writes down what it hears: "+0" a document was added at 0, "-0" deleted; "[+0]", "[-0]", "[*0]" a folder was
// added, deleted, updated.
class RecordingContainerDelegate final : public TamberFilesAndFoldersContainerDelegate
{
public:
    void fileAddedAtIndex(StoreIndex index) override { heard.append(text(u"+%1", index)); }
    void fileDeletedAtIndex(StoreIndex index) override { heard.append(text(u"-%1", index)); }
    void folderAddedAtIndex(StoreIndex index) override { heard.append(text(u"[+%1]", index)); }
    void folderDeletedAtIndex(StoreIndex index) override { heard.append(text(u"[-%1]", index)); }
    void folderUpdatedAtIndex(StoreIndex index) override { heard.append(text(u"[*%1]", index)); }
    // What was heard since the last call.
    QString take() { return std::exchange(heard, {}).join(u' '); }

    QStringList heard;

private:
    static QString text(QStringView pattern, StoreIndex index) { return pattern.toString().arg(index); }
};

// Containers "one" and "two" over real folders below the rig's root.
struct ContainerBench
{
    using Box = std::shared_ptr<TamberFilesAndFoldersContainer>;

    explicit ContainerBench(StoreRig::Place place = StoreRig::Place::Local)
        : rig(place, operations)
    {
        for (const QString &name : {QStringLiteral("one"), QStringLiteral("two")})
            rig.makeFolder(name);
    }

    Box open(const QString &name = QStringLiteral("one"))
    {
        auto box = TamberFilesAndFoldersContainer::withFolder(rig.context, name, location);
        box->setDelegate(delegate);
        box->loadContent();
        rig.settle();
        return box;
    }
    static QStringList names(const TamberFilesContainer &box)
    {
        QStringList all;
        for (const auto &file : box.files())
            all.append(file->name());
        return all;
    }
    static QStringList folderNames(const TamberFilesAndFoldersContainer &box)
    {
        QStringList all;
        for (const auto &folder : box.folders())
            all.append(folder->name());
        return all;
    }
    void refuse(FaultyFileOperations::Call call) { operations.failEvery(call, std::errc::io_error); }
    qsizetype told(StoreProblem::What what) const { return rig.told->count(what); }

    FaultyFileOperations operations;
    StoreRig rig;
    std::shared_ptr<FixedLocation> location = std::make_shared<FixedLocation>(rig.root());
    std::shared_ptr<RecordingContainerDelegate> delegate = std::make_shared<RecordingContainerDelegate>();
};

} // namespace cvtamber
