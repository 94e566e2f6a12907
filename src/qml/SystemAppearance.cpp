// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/SystemAppearance.h"

#include <QEvent>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

namespace cvtamber {
namespace {

// The usual size of a desktop's font, in points: its texts are shown at 100 %.
constexpr double usualFontSize = 11;
constexpr double smallestScale = 0.8;
constexpr double largestScale = 2;

std::optional<bool> choice(const char *variable, const char *yes, const char *no)
{
    const QByteArray value = qgetenv(variable);
    if (value == yes) {
        return true;
    }
    if (value == no) {
        return false;
    }
    return std::nullopt;
}

} // namespace

SystemAppearance::SystemAppearance(QObject *parent)
    : QObject(parent)
{
    readEnvironment();
    readApplication();
    if (qApp != nullptr) {
        qApp->installEventFilter(this);
    }
}

void SystemAppearance::setDesktopLook(const DesktopLook &look)
{
    if (look == _desktop) {
        return;
    }
    _desktop = look;
    emit changed();
}

bool SystemAppearance::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        setKeyboardInUse(true);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        setKeyboardInUse(false);
        break;
    case QEvent::ApplicationPaletteChange:
    case QEvent::ApplicationFontChange:
        if (watched == qApp) {
            readApplication();
            emit changed();
        }
        break;
    default:
        break;
    }
    return false;
}

void SystemAppearance::readEnvironment()
{
    _dark = choice("CVTAMBER_APPEARANCE", "dark", "light");
    _highContrast = choice("CVTAMBER_CONTRAST", "high", "normal");
    _reducedMotion = choice("CVTAMBER_MOTION", "reduced", "normal");
    bool isNumber = false;
    const double scale = qgetenv("CVTAMBER_TEXT_SCALE").toDouble(&isNumber);
    if (isNumber) {
        _textScale = std::clamp(scale, smallestScale, largestScale);
    }
}

void SystemAppearance::readApplication()
{
    const QPalette palette = QGuiApplication::palette();
    _paletteDark =
        palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    const double points = QGuiApplication::font().pointSizeF();
    // Smaller fonts than usual are left at 100 %: the layout's sizes are the least that is well read.
    _fontScale = points > 0 ? std::clamp(points / usualFontSize, 1.0, largestScale) : 1;
}

void SystemAppearance::setKeyboardInUse(bool inUse)
{
    if (_isKeyboardInUse != inUse) {
        _isKeyboardInUse = inUse;
        emit keyboardInUseChanged();
    }
}

} // namespace cvtamber
