// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickImageProvider>

namespace cvtamber {

// The pictures of a bubble table in the colours of the look.
//
// "image://bubbles/NAME/FILL/OUTLINE/INK": a drawing of data/images/bubbles (NAME as "bubbleMine@2x"), in which black
// stands for the first colour, red for the second and green for the third; colours are RRGGBB or AARRGGBB.
// "image://bubbles/avatar/SIDE/RADIUS/SOURCE": a picture of the program's resources or of a local file, its address
// percent-encoded, square and with round corners; lengths in pixels. What does not exist is transparent.
//
// Thread: the scene's loading threads. Owner: the engine.
class BubbleImageProvider final : public QQuickImageProvider
{
public:
    BubbleImageProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace cvtamber
