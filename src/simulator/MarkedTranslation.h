// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace cvtamber {

// The simulated device translates no braille: it marks the text, so that a person and a test can see which
// way it went. Pure functions.
//
//   forward   Hello -> <braille 2>Hello</braille>, with the grade
//   backward  <braille 2>Hello</braille> -> Hello, and anything else Hello -> <print 2>Hello</print>
//
// So a text that was stored translated and is fetched back-translated comes back as it was.
namespace MarkedTranslation {

QByteArray forwardOpening(int grade);
QByteArray forwardClosing();

QByteArray forward(const QByteArray &text, int grade);
QByteArray backward(const QByteArray &stored, int grade);

} // namespace MarkedTranslation

} // namespace cvtamber
