// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as "user.txt", and any three names written to one.
#include "Require.h"
#include "store/Records.h"

#include <algorithm>

using namespace cvtamber;

namespace {

const QByteArray Mark = QByteArrayLiteral("\xEF\xBB\xBF");

void checkText(const QByteArray &bytes)
{
    const QString text = textFromUtf8(bytes);
    if (!text.isNull() && !bytes.startsWith(Mark))
        require(utf8FromText(text) == bytes, "a text that can be read is written as it was");
    const UserRecord record = UserRecord::fromText(text);
    for (const QString &field : {record.firstName, record.lastName, record.displayName}) {
        require(field.isNull() == text.isNull(), "fields are missing only where the text is");
        require(!field.contains(u'\n'), "a field is one line");
    }
}

void checkRecord(const UserRecord &record)
{
    const QString written = record.toText();
    require(written.count(u'\n') == 3 && written.endsWith(u'\n') && !written.contains(u'\r'),
            "there are three lines");
    const UserRecord read = UserRecord::fromText(textFromUtf8(utf8FromText(written)));
    require(UserRecord::fromText(read.toText()) == read, "what was written and read stays");
    const auto isPlain = [](const QString &name) {
        return std::all_of(name.begin(), name.end(),
                           [](QChar unit) { return unit.isLetterOrNumber() || unit == u' '; });
    };
    if (isPlain(record.firstName) && isPlain(record.lastName) && isPlain(record.displayName))
        require(read == record, "plain names come back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    checkText(bytes);
    // As UTF-16 too: names may hold anything that a string can.
    const auto units = static_cast<qsizetype>(size / 2);
    QString names(units, Qt::Uninitialized);
    std::copy_n(data, units * 2, reinterpret_cast<uint8_t *>(names.data()));
    for (const QString &text : {names, QString::fromUtf8(bytes)}) {
        const qsizetype third = text.size() / 3;
        checkRecord({text.first(third), text.sliced(third, third), text.sliced(2 * third)});
    }
    return 0;
}
