// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import CVTamber

// Shows how far a list is scrolled while it moves or the pointer is on it, and moves it.
T.ScrollBar {
    id: bar

    Accessible.ignored: true
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    // However long the list is, there is something to take hold of.
    minimumSize: Math.min(1, Theme.target / Math.max(1, height))
    padding: 2

    contentItem: Rectangle {
        id: handle

        color: bar.pressed ? Theme.secondaryText : Theme.outline
        implicitWidth: 6
        opacity: 0
        radius: width / 2

        states: State {
            name: "seen"
            when: bar.active && bar.size < 1

            PropertyChanges {
                handle.opacity: 0.75
            }
        }
        transitions: Transition {
            from: "seen"

            SequentialAnimation {
                PauseAnimation {
                    duration: 450
                }
                NumberAnimation {
                    duration: Theme.shortMotion
                    property: "opacity"
                    target: handle
                }
            }
        }
    }
}
