pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// The rows of a page in cards, as wide as is good to read.
ListView {
    id: list

    required property PageModel page
    required property Theme theme

    readonly property real margin: list.width < 414 ? 16 : 20
    readonly property real rowWidth: Math.min(list.width - 2 * list.margin, 640)
    readonly property int moveDuration: 240

    function moveFocus(direction: int) {
        const next = list.page.nextWorkable(list.currentIndex, direction);
        list.currentIndex = next;
        list.positionViewAtIndex(next, ListView.Contain);
    }

    Accessible.ignored: !list.enabled || !list.visible
    Accessible.name: list.page.title
    Accessible.role: Accessible.List
    activeFocusOnTab: true
    bottomMargin: 24
    // Rows are quickly made when they come into sight. Made ahead, they are still on their way when a page drops rows.
    cacheBuffer: 0
    clip: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    model: list.page
    topMargin: 20

    add: Transition {
        enabled: list.theme.animated

        NumberAnimation {
            duration: list.moveDuration
            from: 0
            property: "opacity"
            to: 1
        }
    }
    delegate: PageRow {
        page: list.page
        width: list.rowWidth
        x: (list.width - list.rowWidth) / 2
    }
    displaced: Transition {
        enabled: list.theme.animated

        NumberAnimation {
            duration: list.moveDuration
            easing.type: Easing.OutCubic
            property: "y"
        }

        // A row that is pushed on while it comes up comes up all the same.
        NumberAnimation {
            duration: list.moveDuration
            property: "opacity"
            to: 1
        }
    }
    remove: Transition {
        enabled: list.theme.animated

        NumberAnimation {
            duration: list.moveDuration
            property: "opacity"
            to: 0
        }
    }

    Component.onCompleted: {
        list.page.setRowWidth(list.rowWidth);
        list.currentIndex = list.page.nextWorkable(-1, 1);
    }
    Keys.onDownPressed: list.moveFocus(1)
    Keys.onUpPressed: list.moveFocus(-1)
    onRowWidthChanged: list.page.setRowWidth(list.rowWidth)
}
