// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/IconProvider.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <algorithm>

namespace cvtamber {
namespace {

// The grid on which the icons are drawn.
constexpr int Grid = 24;
// Far above any screen: a wrong size must not take the memory of the machine.
constexpr int LargestIconSide = 1024;

int sideFor(const QSize &requested)
{
    int side = std::min(requested.width(), requested.height());
    // A size may name one side alone.
    if (side <= 0)
        side = std::max(requested.width(), requested.height());
    return side > 0 ? std::min(side, LargestIconSide) : Grid;
}

// Scaled down from the largest, lines stay even; from the next larger one they would not.
QLatin1String rendition(int side)
{
    switch (side) {
    case Grid:
        return QLatin1String(".png");
    case 2 * Grid:
        return QLatin1String("@2x.png");
    default:
        return QLatin1String("@3x.png");
    }
}

QImage shapeOf(QString name, int side)
{
    if (const QLatin1String ending(".png"); name.endsWith(ending)) {
        name.chop(ending.size());
    }
    QImage image(QLatin1String(":/images/") % name % rendition(side));
    if (image.isNull()) {
        image = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        return image;
    }
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    return image.width() == side ? image
                                 : image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QColor colorNamed(QStringView digits)
{
    const QString name = QLatin1Char('#') % digits;
    return QColor::isValidColorName(name) ? QColor(name) : QColor(Qt::black);
}

} // namespace

IconProvider::IconProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{}

QImage IconProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
    QImage image = shapeOf(id.left(slash), sideFor(requestedSize));
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colorNamed(QStringView(id).mid(slash + 1)));
    painter.end();
    if (size != nullptr) {
        *size = image.size();
    }
    return image;
}

QIcon IconProvider::applicationIcon()
{
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 128}) {
        icon.addFile(QStringLiteral(":/images/application/org.cvtamber.CVTamber-%1.png").arg(side),
                     QSize(side, side));
    }
    return icon;
}

} // namespace cvtamber
