// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/UserDefaults.h"

#include <QVariantMap>

namespace cvtamber {

// User defaults that a test reads and writes; what another process changes is seen after synchronize().
class MemoryDefaults final : public UserDefaults
{
public:
    QVariant value(const QString &key) override { return values.value(key); }
    void setValue(const QString &key, const QVariant &value) override { values.insert(key, value); }
    void synchronize() override
    {
        values.insert(elsewhere);
        elsewhere.clear();
    }

    QVariantMap values;
    QVariantMap elsewhere;
};

} // namespace cvtamber
