// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/BubbleImageProvider.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>

namespace cvtamber {
namespace {

// Far above any screen: a wrong size must not take the memory of the machine.
constexpr int LargestSide = 1024;

QImage blank()
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QColor colorNamed(const QString &digits)
{
    const QString name = QLatin1Char('#') % digits;
    return QColor::isValidColorName(name) ? QColor(name) : QColor(Qt::black);
}

// Black, red and green of a pixel are how much it has of each colour.
QRgb mixed(QRgb pixel, const std::array<QColor, 3> &colors)
{
    const std::array<int, 3> shares{std::max(0, 255 - qRed(pixel) - qGreen(pixel)), qRed(pixel),
                                    qGreen(pixel)};
    const auto channel = [&](auto of) {
        int sum = 0;
        for (size_t i = 0; i < shares.size(); ++i)
            sum += shares[i] * of(colors[i]);
        return std::min(255, (sum + 127) / 255);
    };
    return qRgba(channel([](const QColor &color) { return color.red(); }),
                 channel([](const QColor &color) { return color.green(); }),
                 channel([](const QColor &color) { return color.blue(); }),
                 channel([](const QColor &color) { return color.alpha(); }) * qAlpha(pixel) / 255);
}

QImage drawing(const QStringList &parts)
{
    QImage image(QLatin1String(":/images/bubbles/") % parts[0] % QLatin1String(".png"));
    if (image.isNull())
        return blank();
    // Qt reads a ratio from the name, and its software renderer then reads beyond the image.
    image.setDevicePixelRatio(1);
    image.convertTo(QImage::Format_ARGB32);
    const std::array<QColor, 3> colors{colorNamed(parts[1]), colorNamed(parts[2]), colorNamed(parts[3])};
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        std::transform(line, line + image.width(), line, [&](QRgb pixel) { return mixed(pixel, colors); });
    }
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    return image;
}

QImage avatar(const QStringList &parts)
{
    const QUrl address(QUrl::fromPercentEncoding(parts[3].toUtf8()));
    const auto side = std::clamp(parts[1].toInt(), 1, LargestSide);
    const auto radius = parts[2].toInt();
    const auto file =
        address.scheme() == QLatin1String("qrc") ? QLatin1Char(':') % address.path() : address.toLocalFile();
    const auto picture = file.isEmpty() ? QImage() : QImage(file);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (picture.isNull())
        return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(image.rect(), radius, radius);
    painter.setClipPath(path);
    const auto shown = picture.scaled(side, side, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    painter.drawImage((side - shown.width()) / 2, (side - shown.height()) / 2, shown);
    return image;
}

} // namespace

BubbleImageProvider::BubbleImageProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{}

QImage BubbleImageProvider::requestImage(const QString &id, QSize *size, const QSize &)
{
    const auto parts = id.split(QLatin1Char('/'));
    constexpr qsizetype Parts = 4;
    QImage image = blank();
    if (parts.size() == Parts)
        image = parts[0] == QLatin1String("avatar") ? avatar(parts) : drawing(parts);
    if (size != nullptr)
        *size = image.size();
    return image;
}

} // namespace cvtamber
