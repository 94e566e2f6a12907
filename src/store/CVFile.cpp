// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CVFile.h"

#include "store/Records.h"

namespace cvtamber {

QByteArray CVFile::contentsForType() const
{
    return utf8FromText(_text);
}

bool CVFile::loadFromContents(const QByteArray &bytes)
{
    _text = textFromUtf8(bytes);
    return !_text.isNull();
}

} // namespace cvtamber
