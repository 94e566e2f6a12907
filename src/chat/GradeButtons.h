// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cvtamber {

class CVBTDevice;
class ViewController;

// The bar buttons "Grade 1" and "Grade 2" of a screen with live text: which grade of braille the device writes and
// reads. There are none where the keyboard language has no grades (1 to 3 have). The button of the grade that the device has is
// disabled.
//
// Thread: main thread. Owner: the screen, which like the device outlives it.
class GradeButtons
{
public:
    GradeButtons(ViewController &screen, CVBTDevice &device);

    // For viewDidLoad: at the right, where there are any.
    void addToBar();
    // For viewWillAppear, and when the device has told its grades anew.
    void updateEnabled();

    // What a person does: the grade of both directions.
    void grade1Clicked() { chooseGrade(1); }
    void grade2Clicked() { chooseGrade(2); }

private:
    void chooseGrade(int grade);
    void show(int currentGrade);

    ViewController &_screen;
    CVBTDevice &_device;
    bool _isShown = false;
};

} // namespace cvtamber
