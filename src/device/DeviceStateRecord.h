// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <array>

namespace cvtamber {

// The device's state record: 30 integers, in the order of the PCR reply. Fields without a name here are kept
// and not interpreted.
struct DeviceStateRecord
{
    static constexpr int FieldCount = 30;
    enum Field : int {
        BrailleCodeSetting = 0,
        LanguageNumber = 8,
        BackTranslationOnS2 = 13,
        BackTranslationOnUsb = 19,
        EmbosserOutput = 21,
        ForwardTranslationForEmbossing = 23,
        BackwardGrade = 24,
        ForwardGrade = 26,
        AdvancedMode = 28,
    };

    std::array<qint32, FieldCount> fields{};

    qint32 operator[](int field) const { return fields[static_cast<size_t>(field)]; }
    qint32 &operator[](int field) { return fields[static_cast<size_t>(field)]; }
};

} // namespace cvtamber
