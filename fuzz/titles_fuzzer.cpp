// SPDX-License-Identifier: GPL-3.0-or-later
// Any title, from a person, a device or another program's file name.
#include "Require.h"
#include "base/NameBytes.h"
#include "base/PathBytes.h"
#include "store/CloudNames.h"
#include "store/FileURL.h"
#include "store/StoreNames.h"

#include <QSet>

#include <algorithm>

using namespace cvtamber;

namespace {

bool isHarmless(const QString &name)
{
    const bool isClean = std::none_of(name.begin(), name.end(), [](QChar unit) {
        return unit == u'/' || unit == u'\\' || unit.category() == QChar::Other_Control;
    });
    return isClean && !name.isEmpty() && !name.startsWith(u'.') && nameBytes(name) <= MaxNameBytes;
}

void checkTitle(const QString &title)
{
    const QString repaired = repairedTitle(title);
    require(repairedTitle(repaired) == repaired, "a repaired title needs no repair");
    require(repaired.normalized(QString::NormalizationForm_C) == repaired, "it is in composed form");
    const QString file = documentFileName(title);
    require(isHarmless(repaired) && isHarmless(file), "it leads nowhere else and fits");
    require(FileURL::directory(QStringLiteral("/s")).appendingFile(file).lastPathComponent() == file,
            "it is a file of its folder");
    require(!isSyncTemporary(file) && nameBehindPlaceholder(file).isNull(), "it is taken for a document");
    require(pathOfBytes(bytesOfPath(repaired)) == repaired, "it comes back from the disk");
    require(!singleLine(title).contains(u'\n'), "it is one line of a record");
    require(comparableName(comparableName(file)) == comparableName(file),
            "comparing twice is comparing once");
}

void checkFreeTitles(const QString &title)
{
    QSet<QString> taken;
    for (int i = 0; i < 4; ++i) {
        const QString free = nextFreeTitle(title, [&](const QString &one) { return taken.contains(one); });
        require(!taken.contains(free), "it is free");
        require(repairedTitle(free) == free, "a free title needs no repair");
        taken.insert(free);
    }
}

void checkNames(const QString &name)
{
    require(isLike(name, name) && isLike(name, u"*"), "a name is like itself and like anything");
    isSyncTemporary(name);
    isConflictCopy(name);
    if (nameBytes(name) > MaxNameBytes || name.isEmpty() || name == QLatin1String(".") ||
        name == QLatin1String(".."))
        return;
    for (const QString &placeholder : placeholderNames(name)) {
        require(nameBytes(placeholder) <= MaxNameBytes, "a placeholder fits");
        require(nameBehindPlaceholder(placeholder) == name,
                "the name behind a placeholder is the document's");
    }
    for (const int number : {1, 2, 1000}) {
        const QString copy = conflictCopyName(name, number);
        require(nameBytes(copy) <= MaxNameBytes, "a conflict copy fits");
        require(isConflictCopy(copy), "a conflict copy is known as one");
    }
}

void check(const QString &text)
{
    checkTitle(text);
    checkFreeTitles(text);
    // No file system has names that are longer.
    checkNames(text.left(2 * MaxNameBytes));
    checkNames(documentFileName(text));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    check(QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    // As UTF-16 too: halves of pairs and the odd bytes of file names.
    const auto units = static_cast<qsizetype>(size / 2);
    QString text(units, Qt::Uninitialized);
    std::copy_n(data, units * 2, reinterpret_cast<uint8_t *>(text.data()));
    check(text);
    return 0;
}
