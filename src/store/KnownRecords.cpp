// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/KnownRecords.h"

#include "base/UserDefaults.h"
#include "store/ContainerListing.h"
#include "store/FileCoordinator.h"
#include "store/StoreContext.h"
#include "store/StoreNames.h"
#include "store/UserDirectories.h"

#include <QVariantMap>

#include <chrono>
#include <utility>
#include <vector>

namespace cvtamber {

namespace {

// A sync program tries again after a minute what it could not delete.
constexpr std::chrono::minutes StayTime{2};

std::vector<FileURL> documentsIn(const StoreDisk &disk, const FileURL &directory)
{
    std::vector<FileURL> files = disk.walk(directory).files;
    std::erase_if(files, [](const FileURL &file) {
        const QString &name = file.lastPathComponent();
        return name.startsWith(u'.') || !hasDocumentExtension(name);
    });
    return files;
}

// `done` hears whether they have stayed.
void whenDocumentsStay(StoreContext &context, const FileURL &record, const std::vector<FileURL> &before,
                       const std::function<void(bool)> &done)
{
    context.saves.perform(StayTime, [&context, record, before, done] {
        const std::vector<FileURL> now = documentsIn(context.disk, record.deletingLastPathComponent());
        if (now == before || now.empty() || !isCertainlyAbsent(context.disk, record))
            done(!now.empty() && isCertainlyAbsent(context.disk, record));
        else
            whenDocumentsStay(context, record, now, done);
    });
}

} // namespace

void KnownRecords::keepIn(UserDefaults &defaults)
{
    _defaults = &defaults;
    const QVariantMap kept = defaults.value(CloudRecordsDefault.toString()).toMap();
    for (auto it = kept.begin(); it != kept.end(); ++it)
        _bytesByPath.try_emplace(it.key(), it.value().toByteArray());
}

void KnownRecords::saveLater(StoreContext &context)
{
    if (!_defaults || std::exchange(_isSaveScheduled, true))
        return;
    context.saves.perform({}, [this] {
        _isSaveScheduled = false;
        QVariantMap kept;
        for (const auto &[path, bytes] : _bytesByPath)
            kept.insert(path, bytes);
        _defaults->setValue(CloudRecordsDefault.toString(), kept);
    });
}

std::map<QString, QByteArray> KnownRecords::below(const FileURL &directory) const
{
    const QString prefix = directory.path() + u'/';
    std::map<QString, QByteArray> found;
    for (auto it = _bytesByPath.lower_bound(prefix); it != _bytesByPath.end() && it->first.startsWith(prefix);
         ++it)
        found.insert(*it);
    return found;
}

void KnownRecords::remember(StoreContext &context, const FileURL &record, const QByteArray &bytes)
{
    KnownRecords &known = context.knownRecords;
    const auto [entry, isNew] = known._bytesByPath.try_emplace(record.path(), bytes);
    if (!isNew && std::exchange(entry->second, bytes) == bytes)
        return;
    known.saveLater(context);
}

void KnownRecords::restoreWhereDocumentsStay(StoreContext &context, const FileURL &directory)
{
    KnownRecords &known = context.knownRecords;
    for (const auto &[path, bytes] : known.below(directory)) {
        const FileURL record = FileURL::file(path);
        if (known._waiting.contains(path) || !isCertainlyAbsent(context.disk, record))
            continue;
        const std::vector<FileURL> documents = documentsIn(context.disk, record.deletingLastPathComponent());
        if (documents.empty())
            continue;
        known._waiting.insert(path);
        whenDocumentsStay(context, record, documents, [&context, record, bytes = bytes](bool haveStayed) {
            context.knownRecords._waiting.erase(record.path());
            if (haveStayed)
                context.coordinator.replace(record, bytes, {}, StoreDisk::OtherVersion::Replace, {});
        });
    }
}

void KnownRecords::forgetGone(StoreContext &context, const FileURL &directory)
{
    KnownRecords &known = context.knownRecords;
    for (const auto &[path, bytes] : known.below(directory)) {
        const FileURL holder = FileURL::file(path).deletingLastPathComponent();
        if (context.disk.status(holder).kind == FileStatus::Kind::Missing) {
            known._bytesByPath.erase(path);
            known.saveLater(context);
        }
    }
}

} // namespace cvtamber
