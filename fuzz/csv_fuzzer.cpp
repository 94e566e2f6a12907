// SPDX-License-Identifier: GPL-3.0-or-later
// Any text as a line of comma-separated fields: whole, as UTF-8 and as it comes.
#include "Require.h"
#include "base/CVCSVRecord.h"

#include <algorithm>

using namespace cvtamber;

namespace {

void check(const QString &line)
{
    const QStringList fields = CVCSVRecord(line).fields();
    require(!fields.isEmpty(), "there is always a field");
    qsizetype letters = 0;
    for (const QString &field : fields)
        letters += field.size();
    require(letters + fields.size() - 1 <= line.size(), "nothing is in the fields that is not in the line");
    require(fields == CVCSVRecord::makeFieldsArrayFromString(line), "both doors lead to the same fields");
    require(CVCSVRecord::unquoteString(line).size() <= line.size(), "unquoting adds nothing");
    if (!line.contains(u'"'))
        require(fields == line.split(u','), "without quotes, commas alone divide");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    check(QString::fromUtf8(bytes));
    check(QString::fromLatin1(bytes));
    return 0;
}
