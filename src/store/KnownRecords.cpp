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
constexpr qint64 DaysKept = 90;

// A directory keeps its name wherever it is moved.
QString uuidOf(const FileURL &record)
{
    return record.deletingLastPathComponent().lastPathComponent();
}

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
    for (auto it = kept.begin(); it != kept.end(); ++it) {
        const QVariantList entry = it.value().toList();
        const Known known{entry.value(1).toByteArray(), entry.value(0).toDate()};
        if (known.day.daysTo(QDate::currentDate()) <= DaysKept)
            _byUuid.try_emplace(it.key(), known);
    }
}

void KnownRecords::save() const
{
    QVariantMap kept;
    for (const auto &[uuid, known] : _byUuid)
        kept.insert(uuid, QVariantList{known.day, known.bytes});
    _defaults->setValue(CloudRecordsDefault.toString(), kept);
}

void KnownRecords::remember(StoreContext &context, const FileURL &record, const QByteArray &bytes)
{
    KnownRecords &all = context.knownRecords;
    const Known known{bytes, QDate::currentDate()};
    const bool isNews = std::exchange(all._byUuid[uuidOf(record)], known) != known;
    if (!isNews || !all._defaults || std::exchange(all._isSaveScheduled, true))
        return;
    // Once for all that are read in one turn of the loop.
    context.saves.perform({}, [&all] {
        all._isSaveScheduled = false;
        all.save();
    });
}

void KnownRecords::restoreWhereDocumentsStay(StoreContext &context, const FileURL &record)
{
    KnownRecords &all = context.knownRecords;
    const auto known = all._byUuid.find(uuidOf(record));
    if (known == all._byUuid.end() || all._waiting.contains(record.path()) ||
        !isCertainlyAbsent(context.disk, record))
        return;
    const std::vector<FileURL> documents = documentsIn(context.disk, record.deletingLastPathComponent());
    if (documents.empty())
        return;
    all._waiting.insert(record.path());
    const QByteArray bytes = known->second.bytes;
    whenDocumentsStay(context, record, documents, [&context, record, bytes](bool haveStayed) {
        context.knownRecords._waiting.erase(record.path());
        if (haveStayed)
            context.coordinator.replace(record, bytes, {}, StoreDisk::OtherVersion::Replace, {});
    });
}

} // namespace cvtamber
