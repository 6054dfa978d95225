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
    /// The page is a list, and has nothing but the texts at its end.
    readonly property bool isEmpty: list.count === 1
    readonly property int moveDuration: 240
    /// How much of its height the list goes on by at once, and where in it the row is then that gets the keyboard.
    readonly property real pageShare: 0.9
    readonly property real edge: 40
    /// Where the list is scrolled to at its beginning and at its end.
    readonly property real highestY: list.originY - list.topMargin
    readonly property real lowestY: Math.max(list.highestY, list.originY + list.contentHeight + list.bottomMargin - list.height)

    function show(index: int) {
        if (index >= 0)
            list.positionViewAtIndex(index, ListView.Contain);
    }

    function moveFocus(direction: int) {
        list.currentIndex = list.page.nextWorkable(list.currentIndex, direction);
        // Beyond the last row there may still be texts.
        if (list.page.nextWorkable(list.currentIndex, direction) === list.currentIndex)
            list.scrollTo(direction > 0 ? list.lowestY : list.highestY);
        list.show(list.currentIndex);
    }

    function moveFocusToEnd(direction: int) {
        if (direction > 0)
            list.positionViewAtEnd();
        else
            list.positionViewAtBeginning();
        list.forceLayout();
        list.currentIndex = list.page.nearestWorkable(direction > 0 ? list.count - 1 : 0);
        list.scrollTo(direction > 0 ? list.lowestY : list.highestY);
    }

    function movePage(direction: int) {
        const goal = list.contentY + direction * list.pageShare * list.height;
        if (goal <= list.highestY || goal >= list.lowestY)
            return list.moveFocusToEnd(direction);
        list.scrollTo(goal);
        const edge = direction > 0 ? list.height - list.edge : list.edge;
        list.currentIndex = list.page.nearestWorkable(list.indexAt(list.width / 2, list.contentY + edge));
        list.show(list.currentIndex);
    }

    function scrollTo(y: real) {
        list.contentY = Math.max(list.highestY, Math.min(list.lowestY, y));
        list.forceLayout();
    }

    // The row that had the keyboard may have gone, or may not be worked any more.
    function keepFocus() {
        const kept = list.page.nearestWorkable(list.currentIndex);
        if (kept !== list.currentIndex)
            list.currentIndex = kept;
    }

    function noteEmptiness() {
        if (list.isEmpty && note.status === Loader.Null)
            note.setSource("EmptyNote.qml", {
                    "theme": list.theme
                });
    }

    function keepFocusInSight() {
        if (list.theme.showsFocus)
            showingFocus.restart();
    }

    Accessible.ignored: !list.enabled || !list.visible
    Accessible.name: list.page.title
    Accessible.role: Accessible.List
    // The keyboard may be here when the last row goes.
    activeFocusOnTab: list.currentIndex >= 0 || list.activeFocus
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
        id: row

        page: list.page
        width: list.rowWidth
        x: (list.width - list.rowWidth) / 2

        onRefreshed: {
            if (list.currentIndex < 0 ? row.workable : row.index === list.currentIndex && !row.workable)
                list.keepFocus();
        }
        // The keyboard goes on from where the finger was.
        onTouched: {
            list.currentIndex = row.index;
            list.forceActiveFocus();
        }
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
        list.currentIndex = list.page.nearestWorkable(0);
        list.keepFocusInSight();
        list.noteEmptiness();
    }
    Keys.onDownPressed: list.moveFocus(1)
    Keys.onPressed: event => {
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Home:
            return list.moveFocusToEnd(-1);
        case Qt.Key_End:
            return list.moveFocusToEnd(1);
        case Qt.Key_PageUp:
            return list.movePage(-1);
        case Qt.Key_PageDown:
            return list.movePage(1);
        default:
            event.accepted = false;
        }
    }
    Keys.onUpPressed: list.moveFocus(-1)
    onCountChanged: list.keepFocus()
    onMovingChanged: {
        // Not before something is scrolled.
        if (mark.status === Loader.Null)
            mark.setSource("ScrollMark.qml", {
                    "target": list,
                    "theme": list.theme
                });
    }
    onHeightChanged: list.keepFocusInSight()
    onIsEmptyChanged: list.noteEmptiness()
    onRowWidthChanged: {
        list.page.setRowWidth(list.rowWidth);
        list.keepFocusInSight();
    }

    Loader {
        id: mark
    }

    Loader {
        id: note

        anchors.centerIn: parent
        parent: list
        visible: list.isEmpty
        width: list.rowWidth
    }

    Timer {
        id: showingFocus

        interval: 0

        onTriggered: list.show(list.currentIndex)
    }
}
