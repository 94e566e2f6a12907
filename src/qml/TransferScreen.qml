// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import CVTamber

// How far a transfer is, what stops it, and the button that ends or closes it.
ScreenView {
    id: view

    required property CVTransferViewController controller
    readonly property int percent: Math.round(controller.progress * 100)

    function takeFocus(): bool {
        if (controller.okVisible)
            ok.forceActiveFocus(Qt.OtherFocusReason);
        else
            about.forceActiveFocus(Qt.OtherFocusReason);
        return true;
    }
    function cancel(): bool {
        if (controller.okVisible)
            controller.okClicked();
        else if (controller.cancelVisible)
            controller.cancelClicked();
        return true;
    }

    // A button that goes would keep the focus, unseen.
    function passFocusOn(button: Item): void {
        if (!button.visible && button.activeFocus)
            takeFocus();
    }

    sheetPlace: panel
    spokenTitle: about.words

    FollowingFlickable {
        id: content

        anchors.fill: parent
        contentHeight: panel.height + Theme.gap * 2

        Rectangle {
            id: panel

            border.color: Theme.separator
            border.width: Theme.cardBorder
            color: Theme.card
            height: column.height + Theme.gap * 2
            radius: Theme.panelRadius
            width: Math.min(parent.width - Theme.margin * 2, 420)
            x: (parent.width - width) / 2
            y: Math.max(Theme.gap, (content.height - height) / 2)

            Column {
                id: column

                spacing: Theme.gap
                width: parent.width - Theme.gap * 2
                x: Theme.gap
                y: Theme.gap

                Heading {
                    id: about

                    horizontalAlignment: Text.AlignHCenter
                    width: parent.width
                    words: view.controller.labelText === "" ? qsTrId("Transfer") : view.controller.labelText
                    wrapMode: Text.Wrap
                }
                ProgressBar {
                    id: bar

                    Accessible.name: qsTrId("Progress: %1 %").arg(view.percent)
                    height: Theme.unit
                    padding: 0
                    value: view.controller.progress
                    width: parent.width

                    background: Rectangle {
                        border.color: Theme.outline
                        border.width: 1
                        color: Theme.background
                        radius: height / 2
                    }
                    contentItem: Item {
                        Rectangle {
                            color: view.controller.stalled ? Theme.secondaryText : Theme.accent
                            height: parent.height
                            radius: height / 2
                            width: parent.width * bar.position
                        }
                    }
                }
                AppText {
                    Accessible.name: text
                    Accessible.role: Accessible.StaticText
                    color: view.controller.finished ? Theme.success : Theme.secondaryText
                    font.pixelSize: Theme.detailSize
                    horizontalAlignment: Text.AlignHCenter
                    text: view.controller.statusText
                    visible: text !== ""
                    width: parent.width
                    wrapMode: Text.Wrap
                }
                AppText {
                    Accessible.name: text
                    Accessible.role: Accessible.StaticText
                    color: Theme.destructive
                    font.pixelSize: Theme.detailSize
                    horizontalAlignment: Text.AlignHCenter
                    text: view.controller.problemText
                    visible: text !== ""
                    width: parent.width
                    wrapMode: Text.Wrap
                }
                PlainButton {
                    text: view.controller.againTitle
                    visible: view.controller.againVisible
                    width: parent.width
                    wraps: true

                    onClicked: view.controller.againClicked()
                    onVisibleChanged: view.passFocusOn(this)
                }
                PlainButton {
                    text: view.controller.deleteTitle
                    visible: view.controller.deleteVisible
                    width: parent.width
                    wraps: true

                    onClicked: view.controller.deleteClicked()
                    onVisibleChanged: view.passFocusOn(this)
                }
                PlainButton {
                    surface: Theme.background
                    text: view.controller.cancelTitle
                    visible: view.controller.cancelVisible
                    width: parent.width
                    wraps: true

                    onClicked: view.controller.cancelClicked()
                    onVisibleChanged: view.passFocusOn(this)
                }
                PlainButton {
                    id: ok

                    filled: true
                    text: view.controller.okTitle
                    visible: view.controller.okVisible
                    width: parent.width
                    wraps: true

                    onClicked: view.controller.okClicked()
                    // The way out takes the focus when it appears.
                    onVisibleChanged: if (visible && view.activeFocus)
                        forceActiveFocus(Qt.OtherFocusReason)
                }
            }
        }
    }
}
