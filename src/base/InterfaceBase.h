// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cvtamber {

// The base of what others implement: deleted through it, never copied. Whoever holds one says in its own header who owns it and
// on which thread it is called.
class InterfaceBase
{
public:
    InterfaceBase() = default;
    InterfaceBase(const InterfaceBase &) = delete;
    InterfaceBase &operator=(const InterfaceBase &) = delete;
    virtual ~InterfaceBase() = default;
};

} // namespace cvtamber
