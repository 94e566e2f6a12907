// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// How a connection gets on: what is being done, then how it ended and what can be done about it.
ScreenView {
    id: screen

    required property CVConnectViewController controller

    function takeFocus(): bool {
        if (controller.doneVisible)
            done.forceActiveFocus(Qt.OtherFocusReason);
        else if (controller.retryVisible)
            retry.forceActiveFocus(Qt.OtherFocusReason);
        else
            about.forceActiveFocus(Qt.OtherFocusReason);
        return true;
    }
    function cancel(): bool {
        if (controller.cancelVisible)
            controller.cancelButtonClicked();
        return true;
    }

    spokenTitle: about.words

    // What had the focus may be hidden now.
    Connections {
        function onChanged() {
            if (screen.activeFocus || screen.Window.activeFocusItem === null)
                screen.takeFocus();
        }

        target: screen.controller
    }
    FollowingFlickable {
        anchors.fill: parent
        contentHeight: column.height + Theme.gap * 2

        Column {
            id: column

            spacing: Theme.gap
            width: Math.min(parent.width - Theme.margin * 2, 420)
            x: (parent.width - width) / 2
            y: Math.max(Theme.gap, (screen.height - height) / 2)

            Heading {
                id: about

                font.pixelSize: Math.round(Theme.bodySize * 1.2)
                horizontalAlignment: Text.AlignHCenter
                width: parent.width
                words: screen.controller.connectingText
                wrapMode: Text.Wrap
            }
            Spinner {
                Accessible.name: screen.controller.connectingText
                Accessible.role: Accessible.Animation
                anchors.horizontalCenter: parent.horizontalCenter
                implicitHeight: 48
                visible: screen.controller.busy
            }
            AppText {
                Accessible.name: text
                Accessible.role: Accessible.StaticText
                color: screen.controller.result === CVConnectViewController.Connected ? Theme.success : Theme.destructive
                font.bold: true
                horizontalAlignment: Text.AlignHCenter
                text: screen.controller.resultText
                visible: screen.controller.result !== CVConnectViewController.NoResult
                width: parent.width
                wrapMode: Text.Wrap
            }
            PlainButton {
                id: done

                filled: true
                text: screen.controller.doneTitle
                visible: screen.controller.doneVisible
                wraps: true
                width: parent.width

                onClicked: screen.controller.doneButtonClicked()
            }
            PlainButton {
                id: retry

                filled: true
                text: screen.controller.retryTitle
                visible: screen.controller.retryVisible
                wraps: true
                width: parent.width

                onClicked: screen.controller.retryButtonClicked()
            }
            PlainButton {
                surface: Theme.card
                text: screen.controller.cancelTitle
                visible: screen.controller.cancelVisible
                wraps: true
                width: parent.width

                onClicked: screen.controller.cancelButtonClicked()
            }
        }
    }
}
