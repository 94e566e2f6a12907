// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/TamberDataFolderDocument.h"

#include "base/SystemLog.h"
#include "store/CloudContainer.h"
#include "store/KnownRecords.h"
#include "store/Records.h"
#include "store/StoreContext.h"
#include "store/StoreNames.h"

namespace cvtamber {

TamberDataFolderDocument::~TamberDataFolderDocument()
{
    context().log.info(QStringLiteral("TamberDataFolderDocument::dealloc"));
}

void TamberDataFolderDocument::setName(const QString &name)
{
    const QString line = singleLine(name);
    if (!_name.isNull() && _name == line)
        return;
    _name = line;
    // A reading that is under way does not bring the old name back.
    updateChangeCount(ChangeKind::Done);
    const auto self = std::static_pointer_cast<TamberDataFolderDocument>(shared_from_this());
    saveToURL(fileURL(), SaveOperation::ForOverwriting,
              [self](bool) { self->closeWithCompletionHandler({}); });
}

void TamberDataFolderDocument::setInitialName(const QString &name)
{
    _name = singleLine(name);
}

QByteArray TamberDataFolderDocument::contentsForType() const
{
    return folderNameToBytes(_name);
}

bool TamberDataFolderDocument::loadFromContents(const QByteArray &bytes)
{
    _name = folderNameFromBytes(bytes);
    if (!_name.isNull() && context().cloud.isUbiquitousItem(fileURL()))
        KnownRecords::remember(context(), fileURL(), bytes);
    return !_name.isNull();
}

} // namespace cvtamber
