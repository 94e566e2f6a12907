// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The bar above a screen: back or the left buttons, the title, the right buttons.
Rectangle {
    id: bar

    required property ViewController controller
    required property bool hasBack
    required property string backName
    required property string backSign
    // 0: the large title below says it; 1: the title is here.
    property double titleOpacity: 1
    property alias heading: heading
    // Free at both sides, so that the buttons stand over what they belong to.
    property double side: 0
    readonly property double sideWidth: Math.max(left.width, right.width) + Theme.unit + Theme.buttonBorder * 2 + side
    // Side by side they would be over those at the left.
    readonly property bool stacksRight: widthOfRight() + left.width + Theme.unit * 3 + side * 2 > width

    signal back

    function widthOfRight(): double {
        let sum = 0;
        for (let i = 0; i < rightButtons.count; ++i)
            sum += rightButtons.itemAt(i) === null ? 0 : rightButtons.itemAt(i).implicitWidth;
        return sum;
    }
    function leftButton(index: int): Item {
        return leftButtons.itemAt(index);
    }
    function rightButton(index: int): Item {
        return rightButtons.itemAt(rightButtons.count - 1 - index);
    }

    color: titleOpacity > 0.5 ? Theme.bar : Theme.background
    implicitHeight: Math.max(52, left.height + Theme.unit, right.height + Theme.unit)

    Row {
        id: left

        anchors.left: parent.left
        anchors.leftMargin: Theme.unit + bar.side
        anchors.verticalCenter: parent.verticalCenter

        PlainButton {
            Accessible.name: bar.backName
            iconName: bar.backSign
            visible: bar.hasBack
            onClicked: bar.back()
        }
        Repeater {
            id: leftButtons

            model: bar.controller.leftItems.length

            BarButton {
                required property int index

                item: bar.controller.leftItems[index]
                onClicked: bar.controller.leftItemClicked(index)
            }
        }
    }
    Heading {
        id: heading

        anchors.left: parent.left
        anchors.leftMargin: bar.sideWidth
        anchors.right: parent.right
        anchors.rightMargin: bar.sideWidth
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        opacity: bar.titleOpacity
        text: bar.controller.title
    }
    Grid {
        id: right

        anchors.right: parent.right
        anchors.rightMargin: Theme.unit + bar.side
        anchors.verticalCenter: parent.verticalCenter
        columns: bar.stacksRight ? 1 : Math.max(1, rightButtons.count)
        horizontalItemAlignment: Grid.AlignRight

        Repeater {
            id: rightButtons

            model: bar.controller.rightItems.length

            BarButton {
                required property int index

                // The first item stands at the edge; read and reached from left to right all the same.
                readonly property int place: rightButtons.count - 1 - index

                item: bar.controller.rightItems[Math.max(0, place)]
                onClicked: bar.controller.rightItemClicked(place)
            }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.separator
        height: Theme.hairline
        opacity: bar.titleOpacity
        width: parent.width
    }
}
