// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as "folder.dat", and any name written to one.
#include "Require.h"
#include "store/Records.h"

#include <algorithm>

using namespace cvtamber;

namespace {

void check(const QString &name)
{
    const QByteArray written = folderNameToBytes(name);
    require(written.count('\n') == 1 && written.endsWith('\n'), "there is one line");
    const QString read = folderNameFromBytes(written);
    require(!read.isNull(), "what was written can be read");
    require(folderNameFromBytes(folderNameToBytes(read)) == read, "what was written and read stays");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString name = folderNameFromBytes(bytes);
    require(name.isNull() == textFromUtf8(bytes).isNull(), "a name is missing only where the text is");
    require(!name.contains(u'\n'), "a name is one line");
    check(name);
    const auto units = static_cast<qsizetype>(size / 2);
    QString any(units, Qt::Uninitialized);
    std::copy_n(data, units * 2, reinterpret_cast<uint8_t *>(any.data()));
    check(any);
    return 0;
}
