// SPDX-License-Identifier: GPL-3.0-or-later
#include "chat/GradeButtons.h"

#include "device/CVBTDevice.h"
#include "ui/Texts.h"
#include "ui/ViewController.h"

namespace cvtamber {

namespace {

// Australian, English and American.
constexpr int firstWithGrades = 1;
constexpr int lastWithGrades = 3;

} // namespace

GradeButtons::GradeButtons(ViewController &screen, CVBTDevice &device)
    : _screen(screen)
    , _device(device)
{}

void GradeButtons::addToBar()
{
    const int language = _device.cvKeyboardLanguage();
    _isShown = language >= firstWithGrades && language <= lastWithGrades;
    updateEnabled();
}

void GradeButtons::updateEnabled()
{
    show(_device.forwardGrade());
}

void GradeButtons::chooseGrade(int grade)
{
    show(grade);
    _device.setForwardGrade(grade);
    _device.setBackwardGrade(grade);
}

void GradeButtons::show(int currentGrade)
{
    if (!_isShown)
        return;
    using Kind = BarButtonItem::Kind;
    // From the edge inwards: "Grade 1" is read first.
    _screen.setRightItems(
        {{Kind::Plain, localized("Grade 2"), currentGrade != 2, [this] { grade2Clicked(); }},
         {Kind::Plain, localized("Grade 1"), currentGrade != 1, [this] { grade1Clicked(); }}});
}

} // namespace cvtamber
