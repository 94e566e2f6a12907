// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/RunLoop.h"
#include "store/FileURL.h"

#include <QByteArray>

#include <map>
#include <set>

namespace cvtamber {

class UserDefaults;
struct StoreContext;

// The user default that keeps them: a map from a record's path to its bytes.
inline constexpr QStringView CloudRecordsDefault = u"cloudRecords";

// What the records of the users and folders in the cloud last said. A sync program takes a record away and leaves the documents
// that were written meanwhile; without a record nobody would list them, and nobody else knows the name.
//
// Thread: main thread. Owner: the store's context.
class KnownRecords
{
public:
    // They are kept from run to run, from now on; one change of the settings for all of one turn of the loop. The settings
    // outlive the store.
    void keepIn(UserDefaults &defaults);

    // What a record in the cloud says that has been read.
    static void remember(StoreContext &context, const FileURL &record, const QByteArray &bytes);
    // Writes each record again that is known below the directory, has gone and has left documents, once the same documents have
    // been there for two minutes; while documents go, a deletion is on its way.
    static void restoreWhereDocumentsStay(StoreContext &context, const FileURL &directory);
    // Of directories below this one that have gone.
    static void forgetGone(StoreContext &context, const FileURL &directory);

private:
    void saveLater(StoreContext &context);
    std::map<QString, QByteArray> below(const FileURL &directory) const;

    UserDefaults *_defaults = nullptr;
    std::map<QString, QByteArray> _bytesByPath;
    // Those that are being waited for.
    std::set<QString> _waiting;
    bool _isSaveScheduled = false;
};

} // namespace cvtamber
