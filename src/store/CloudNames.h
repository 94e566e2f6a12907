// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

namespace cvtamber {

// How programs that keep a folder in sync with a cloud name what is not simply a document. Pure functions;
// any thread.

// The document's file name behind a placeholder's ("Letter.tamber" for ".Letter.tamber.icloud",
// "Letter.tamber.nextcloud", "Letter.tamber.owncloud"); null when the name is not a placeholder's.
QString nameBehindPlaceholder(const QString &name);

// The names that a placeholder of this file could have.
QStringList placeholderNames(const QString &name);

// A version that a sync program, or this one, has put beside a document because both sides had changed
// ("Letter (conflicted copy 2026-11-23 101500).tamber", "Letter.sync-conflict-20261123-101500-ABCDEFG.tamber").
bool isConflictCopy(QStringView name);
// The title of the document that a copy of this title belongs to ("Letter"); null for a title that is no copy's.
QString titleBehindConflictCopy(const QString &title);

// A file that is still on its way and will get its real name later, and the sync program's own records.
bool isSyncTemporary(QStringView name);

// The name for another program's version of a document, the n-th that is tried from 1:
// "Letter (conflicted copy).tamber", "Letter (conflicted copy 2).tamber" ... Not longer than 255 bytes.
QString conflictCopyName(const QString &name, int number);

} // namespace cvtamber
