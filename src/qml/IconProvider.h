// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QQuickImageProvider>

namespace cvtamber {

// The line icons in one colour: "image://cvtamber/NAME/COLOUR". NAME is an icon of data/images, as a view calls it
// ("chevron") or as a screen does ("user.png"); COLOUR is RRGGBB or AARRGGBB, black when it is neither. Icons are as
// high as they are wide: a side in pixels, 24 unless asked for. What does not exist is transparent.
//
// Thread: requestImage on the scene's loading threads, applicationIcon on the main one. Owner: the engine.
class IconProvider final : public QQuickImageProvider
{
public:
    IconProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

    // What the desktop shows for the windows of the program.
    static QIcon applicationIcon();
};

} // namespace cvtamber
