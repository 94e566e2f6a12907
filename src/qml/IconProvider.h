// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickImageProvider>

namespace cvtamber {

// Images in one colour: "image://cvtamber/NAME/RRGGBB". NAME is one of the line icons drawn here ("chevron"), else a
// file of the program's resources ("user.png"), whose shape alone counts. What does not exist is transparent.
//
// Thread: the scene's loading threads. Owner: the engine.
class IconProvider final : public QQuickImageProvider
{
public:
    IconProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace cvtamber
