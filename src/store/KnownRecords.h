// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/FileURL.h"

#include <QByteArray>
#include <QDate>

#include <map>
#include <set>

namespace cvtamber {

class UserDefaults;
struct StoreContext;

// The user default that keeps them: a map from the UUID of a user or folder to the last day and its record's bytes.
inline constexpr QStringView CloudRecordsDefault = u"cloudRecords";

// What the records of the users and folders in the cloud last said. A sync program takes a record away and leaves the documents
// that were written meanwhile; without a record nobody would list them, and nobody else knows the name.
//
// One that has not been read for 90 days is forgotten: a name that was deleted does not stay for ever.
// Thread: main thread. Owner: the store's context.
class KnownRecords
{
public:
    // From now on they are kept from run to run. The settings outlive the store.
    void keepIn(UserDefaults &defaults);

    // What a record in the cloud says that has been read.
    static void remember(StoreContext &context, const FileURL &record, const QByteArray &bytes);
    // Where the record has gone, is known and has left documents, writes it again once the same documents have been there for
    // two minutes; while documents go, a deletion is on its way.
    static void restoreWhereDocumentsStay(StoreContext &context, const FileURL &record);

private:
    struct Known
    {
        QByteArray bytes;
        QDate day;
        bool operator==(const Known &) const = default;
    };

    void save() const;

    UserDefaults *_defaults = nullptr;
    std::map<QString, Known> _byUuid;
    // Records that are being waited for.
    std::set<QString> _waiting;
    bool _isSaveScheduled = false;
};

} // namespace cvtamber
