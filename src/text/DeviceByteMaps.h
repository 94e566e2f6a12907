// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <array>

namespace cvtamber {

// The device's own byte codes against those of the code pages. The values belong to the device; the two
// directions are not inverse to each other, so a text does not always come back as it went.
template<size_t Count> struct ByteMap
{
    quint8 first;
    std::array<quint8, Count> values;

    // Bytes outside the range keep their value.
    constexpr quint8 operator()(quint8 byte) const
    {
        return byte < first || byte - first >= static_cast<int>(Count)
                   ? byte
                   : values[static_cast<size_t>(byte - first)];
    }
};

namespace DeviceByteMaps {

// Western text out, from byte 161 of code page 1252.
// clang-format off
inline constexpr ByteMap<95> WesternOut = {161, {
    161, 155, 156, 252, 157, 166,  21, 168, // 161
    169, 166, 174, 172, 173, 174, 175, 248, // 169
    177, 178, 179, 180, 181,  20, 183, 184, // 177
    185, 167, 175, 172, 171, 190, 168, 192, // 185
    193, 194, 195, 142, 143, 146, 128, 200, // 193
    144, 202, 203, 204, 205, 206, 207, 158, // 201
    165, 210, 211, 212, 213, 153, 215, 157, // 209
    217, 218, 219, 154, 221, 222, 225, 133, // 217
    160, 131, 227, 132, 134, 145, 135, 138, // 225
    130, 136, 137, 141, 161, 140, 139, 240, // 233
    164, 149, 162, 147, 245, 148, 246, 155, // 241
    151, 163, 150, 129, 253, 254, 152, // 249
}};
// clang-format on

// Greek text out, from byte 193 of code page 1253; 0 where the device has no code for the character.
// clang-format off
inline constexpr ByteMap<62> GreekOut = {193, {
    128, 129, 130, 131, 132, 133, 134, 135, // 193
    136, 137, 138, 139, 140, 141, 142, 143, // 201
    144,   0, 145, 146, 147, 148, 149, 150, // 209
    151,   0,   0, 225, 226, 227, 229,   0, // 217
    152, 153, 154, 155, 156, 157, 158, 159, // 225
    160, 161, 162, 163, 164, 165, 166, 167, // 233
    168, 170, 169, 171, 172, 173, 174, 175, // 241
    224, 228, 232, 230, 231, 233, // 249
}};
// clang-format on

// Greek text in, first range: from device byte 128.
// clang-format off
inline constexpr ByteMap<48> GreekIn = {128, {
    193, 194, 195, 196, 197, 198, 199, 200, // 128
    201, 202, 203, 204, 205, 206, 207, 208, // 136
    209, 211, 212, 213, 214, 215, 216, 217, // 144
    225, 226, 227, 228, 229, 230, 231, 232, // 152
    233, 234, 235, 236, 237, 238, 239, 240, // 160
    241, 243, 242, 244, 245, 246, 247, 248, // 168
}};
// clang-format on

// Greek text in, second range: from device byte 224.
// clang-format off
inline constexpr ByteMap<10> GreekAccentsIn = {224, {
    249, 220, 221, 222, 250, 223, 252, 253, // 224
    251, 254, // 232
}};
// clang-format on

// Western text in, from device byte 128.
// clang-format off
inline constexpr ByteMap<51> WesternIn = {128, {
    199, 252, 233, 226, 228, 224, 229, 231, // 128
    234, 235, 232, 239, 238, 236, 196, 197, // 136
    201, 230, 198, 244, 246, 242, 251, 249, // 144
    255, 214, 220, 162, 163, 165, 208, 159, // 152
    225, 237, 243, 250, 241, 209, 170, 186, // 160
    191, 169, 170, 189, 188, 173, 171, 187, // 168
    176, 177, 178, // 176
}};
// clang-format on

// Single bytes beside the maps.
inline constexpr quint8 FrenchLigatureInPage = 140;
inline constexpr quint8 FrenchLigatureOnDevice = 159;
inline constexpr quint8 FrenchSmallLigature = 156; // the same on both sides
inline constexpr quint8 SharpSInPage = 223;
inline constexpr quint8 SharpSOnDevice = 225;

} // namespace DeviceByteMaps

} // namespace cvtamber
