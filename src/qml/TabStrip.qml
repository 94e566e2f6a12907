// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The names of the tabs, in a row or one under the other. One tab stop: arrow keys go from tab to tab.
Rectangle {
    id: strip

    required property TabBarController controller
    property bool vertical: false
    readonly property double cellWidth: vertical ? width : width / Math.max(1, controller.count)

    function selectAndFocus(index: int): void {
        if (index < 0 || index >= controller.count)
            return;
        // The focus first: the item that has it cannot stop being a tab stop.
        tabs.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
        controller.selectTab(index);
        tabs.itemAt(controller.selectedIndex).forceActiveFocus(Qt.TabFocusReason);
    }

    Accessible.name: qsTrId("Sections")
    Accessible.role: Accessible.PageTabList
    color: Theme.bar
    implicitHeight: vertical ? 0 : grid.implicitHeight + Theme.half
    implicitWidth: vertical ? Math.round(112 * Math.min(Theme.textScale, 1.6)) : 0

    Rectangle {
        anchors.right: parent.right
        color: Theme.separator
        height: strip.vertical ? parent.height : Theme.hairline
        width: strip.vertical ? Theme.hairline : parent.width
    }
    Grid {
        id: grid

        columns: strip.vertical ? 1 : strip.controller.count
        topPadding: strip.vertical ? Theme.margin : Theme.half

        Repeater {
            id: tabs

            model: strip.controller.count

            TabItem {
                id: tab

                required property int index

                image: strip.controller.tabImage(index)
                selected: strip.controller.selectedIndex === index
                width: strip.cellWidth
                wraps: strip.vertical || Theme.largeText || Theme.highContrast

                onChosen: strip.selectAndFocus(index)
                Keys.onLeftPressed: strip.selectAndFocus(index - 1)
                Keys.onUpPressed: strip.selectAndFocus(index - 1)
                Keys.onRightPressed: strip.selectAndFocus(index + 1)
                Keys.onDownPressed: strip.selectAndFocus(index + 1)
                Keys.onPressed: event => {
                    event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
                    if (event.accepted)
                        strip.selectAndFocus(event.key === Qt.Key_Home ? 0 : tabs.count - 1);
                }

                Connections {
                    function onTabsChanged() {
                        tab.title = strip.controller.tabTitle(tab.index);
                    }

                    target: strip.controller
                }
                Component.onCompleted: title = strip.controller.tabTitle(index)
            }
        }
    }
}
