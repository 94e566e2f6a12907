// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/IconProvider.h"

#include <QColor>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <array>

namespace cvtamber {
namespace {

// Icons are drawn on a square of 24 units: "M x y" begins a line, "L x y" goes on, "O x y r" is a circle.
struct LineIcon
{
    const char *name;
    const char *strokes;
};

constexpr std::array icons = {
    LineIcon{"add", "M 12 4 L 12 20 M 4 12 L 20 12"},
    LineIcon{"back", "M 15 4 L 7 12 L 15 20"},
    LineIcon{"chevron", "M 9 5 L 16 12 L 9 19"},
    LineIcon{"clear", "M 6 6 L 18 18 M 18 6 L 6 18"},
    LineIcon{"detail", "O 12 12 9.5 M 12 11 L 12 17 M 12 7.4 L 12 7.6"},
    LineIcon{"remove", "M 6 12 L 18 12"},
    LineIcon{"check", "M 4 13 L 9.5 18.5 L 20 6"},
    LineIcon{"action",
             "M 12 15 L 12 3 M 7.5 7 L 12 2.5 L 16.5 7 M 8 11 L 5 11 L 5 21 L 19 21 L 19 11 L 16 11"},
    LineIcon{"refresh",
             "M 19.5 9 L 18 7 L 15 5 L 11 4.6 L 7.5 6 L 5 9 L 4.4 12.5 L 5.5 16 L 8.2 18.7 L 12 19.6 L 15.8 "
             "18.7 L 18.5 16 M 20.5 4 L 20 9.3 L 14.7 9"},
};

QPainterPath pathOf(const char *strokes)
{
    QPainterPath path;
    const QStringList words = QString::fromLatin1(strokes).split(QLatin1Char(' '));
    for (qsizetype i = 0; i + 2 < words.size(); i += 3) {
        const QPointF point(words[i + 1].toDouble(), words[i + 2].toDouble());
        switch (words[i].at(0).unicode()) {
        case 'M':
            path.moveTo(point);
            break;
        case 'L':
            path.lineTo(point);
            break;
        default: {
            const double radius = words[i + 3].toDouble();
            path.addEllipse(point, radius, radius);
            ++i;
            break;
        }
        }
    }
    return path;
}

const LineIcon *iconNamed(const QString &name)
{
    for (const LineIcon &icon : icons) {
        if (name == QLatin1String(icon.name)) {
            return &icon;
        }
    }
    return nullptr;
}

QImage drawn(const LineIcon &icon, const QSize &size, const QColor &color)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size.width() / 24.0, size.height() / 24.0);
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(pathOf(icon.strokes));
    return image;
}

QString fileNamed(const QString &name)
{
    for (const char *folder : {":/images/", ":/"}) {
        QString path = QLatin1String(folder) + name;
        if (QFile::exists(path)) {
            return path;
        }
    }
    return {};
}

QImage loaded(const QString &name, const QSize &size, const QColor &color)
{
    QImage image;
    if (const QString file = fileNamed(name); !file.isEmpty()) {
        QImageReader reader(file);
        if (const QSize natural = reader.size(); natural.isValid()) {
            reader.setScaledSize(natural.scaled(size, Qt::KeepAspectRatio));
        }
        image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    if (image.isNull()) {
        image = QImage(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        return image;
    }
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace

IconProvider::IconProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{}

QImage IconProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
    const QString name = id.left(slash);
    const QColor color(QLatin1Char('#') + id.mid(slash + 1));
    const QSize wanted = requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : QSize(24, 24);
    const LineIcon *icon = iconNamed(name);
    QImage image = icon != nullptr ? drawn(*icon, wanted, color) : loaded(name, wanted, color);
    if (size != nullptr) {
        *size = image.size();
    }
    return image;
}

} // namespace cvtamber
