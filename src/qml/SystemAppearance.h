// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/DesktopLook.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace cvtamber {

// How the system wants programs to look, and how the person works: what the theme is made from.
//
// Dark, high contrast and reduced motion are what the desktop says, once setDesktopLook() tells it; where it says nothing of
// dark, the lightness of the system's palette decides. The text's scale is that of the system's font (11 points are 100 %).
// CVTAMBER_APPEARANCE ("light", "dark"), CVTAMBER_CONTRAST ("high", "normal"), CVTAMBER_MOTION ("reduced", "normal") and
// CVTAMBER_TEXT_SCALE (0.8 to 2) go before the system.
// Thread: main thread. Owner: the theme.
class SystemAppearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool dark READ isDark NOTIFY changed FINAL)
    Q_PROPERTY(bool highContrast READ isHighContrast NOTIFY changed FINAL)
    Q_PROPERTY(bool reducedMotion READ isMotionReduced NOTIFY changed FINAL)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed FINAL)
    // The last thing that came from the person was a key: the focus is to be seen.
    Q_PROPERTY(bool keyboardInUse READ isKeyboardInUse NOTIFY keyboardInUseChanged FINAL)

public:
    explicit SystemAppearance(QObject *parent = nullptr);

    bool isDark() const { return _dark.value_or(_desktop.dark.value_or(_paletteDark)); }
    bool isHighContrast() const { return _highContrast.value_or(_desktop.highContrast); }
    bool isMotionReduced() const { return _reducedMotion.value_or(_desktop.reducedMotion); }
    double textScale() const { return _textScale.value_or(_fontScale); }
    bool isKeyboardInUse() const { return _isKeyboardInUse; }

    void setDesktopLook(const DesktopLook &look);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void changed();
    void keyboardInUseChanged();

private:
    void readEnvironment();
    void readApplication();
    void setKeyboardInUse(bool inUse);

    std::optional<bool> _dark;
    std::optional<bool> _highContrast;
    std::optional<bool> _reducedMotion;
    std::optional<double> _textScale;
    bool _paletteDark = false;
    double _fontScale = 1;
    DesktopLook _desktop;
    bool _isKeyboardInUse = false;
};

} // namespace cvtamber
