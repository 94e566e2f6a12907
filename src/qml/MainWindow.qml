// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import CVTamber

// The window: the root's view, and under all the line of notices.
Window {
    id: window

    property ViewController controller: null
    // A modal screen hides the root wholly.
    property bool covered: false
    property string notice: ""
    // What the notice leaves of the window: all else stands in it.
    property alias room: room

    signal keysRequested
    signal filesRequested
    // As text/uri-list; empty where no files were dropped.
    signal dropped(string uris)

    function takeFocus(): void {
        const tabs = host.view as TabsView;
        const navigation = host.view as NavigationView;
        if (tabs !== null)
            tabs.takeFocus();
        else if (navigation !== null)
            navigation.takeFocus();
        else
            host.forceActiveFocus();
    }
    function anchorItem(kind: int, section: int, row: int, button: int): Item {
        const tabs = host.view as TabsView;
        const navigation = host.view as NavigationView;
        return tabs !== null ? tabs.anchorItem(kind, section, row, button) : navigation !== null ? navigation.anchorItem(kind, section, row, button) : null;
    }

    color: Theme.background
    height: 844
    minimumHeight: 480
    minimumWidth: 320
    width: 390

    Shortcut {
        context: Qt.ApplicationShortcut
        sequences: ["F1"]
        onActivated: window.keysRequested()
    }
    Shortcut {
        context: Qt.ApplicationShortcut
        sequences: ["Ctrl+O"]
        onActivated: window.filesRequested()
    }
    Shortcut {
        context: Qt.ApplicationShortcut
        sequences: ["Ctrl+W", "Ctrl+Q"]
        onActivated: window.close()
    }
    // Under all that takes drops itself.
    DropArea {
        anchors.fill: parent

        onDropped: drop => {
            window.dropped(drop.hasUrls ? drop.getDataAsString("text/uri-list") : "");
            drop.accept(Qt.CopyAction);
        }
    }
    ScreenHost {
        id: host

        controller: window.controller
        focus: true
        // Not that of the parent, which has none before the window is shown.
        height: window.height - notices.room
        visible: !window.covered
        width: window.width
    }
    Item {
        id: room

        height: host.height
        width: host.width
    }
    NoticeLine {
        id: notices

        content: window.contentItem
        notice: window.notice
    }
    // Several, because a reader fetches the words some time after it was told that there are any.
    News {}
    News {}
    News {}
    News {}

    component News: Announcer {
        Accessible.ignored: text === ""
        Accessible.name: text
        Accessible.role: Accessible.Notification
        height: 1
        width: 1
    }
}
