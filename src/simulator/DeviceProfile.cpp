// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/DeviceProfile.h"

namespace cvtamber {

DeviceProfileSet DeviceProfileSet::builtIn()
{
    DeviceProfile device;
    device.stateFields = {{0, 2}}; // British braille, as befits its language
    device.files = {
        {QByteArrayLiteral("LETTER.TXT"),
         QByteArrayLiteral(
             "Dear Ida,\r\n\r\nthe new machine has arrived. It is quieter than the old one, and\r\n"
             "the paper no longer slips on the last line.\r\n\r\nYours,\r\nMiro\r\n")},
        {QByteArrayLiteral("SHOPPING.TXT"), QByteArrayLiteral("flour\r\nplums\r\nbraille paper, 140 g\r\n")},
        {QByteArrayLiteral("TIMES.TXT"),
         QByteArrayLiteral("7 x 8 = 56\r\n8 x 8 = 64\r\n9 x 8 = 72\r\n12 x 8 = 96\r\n")},
    };
    DeviceProfileSet set;
    set.devices.append(device);
    return set;
}

} // namespace cvtamber
