import QtQuick

/// What may be higher than its place: scrolled by touch and wheel, and to what the keyboard has reached.
Flickable {
    id: area

    /// What has something new to say and is to be seen, too; null for nothing.
    property Item told: null
    property Item followed: null

    readonly property Item focused: area.Window.activeFocusItem
    readonly property real lowestY: Math.max(0, area.contentHeight - area.height)

    function holds(item: Item): bool {
        for (let above = item; above !== null; above = above.parent) {
            if (above === area.contentItem)
                return true;
        }
        return false;
    }

    function follow(item: Item) {
        area.followed = item;
        revealing.restart();
    }

    function reveal(item: Item) {
        if (!area.holds(item))
            return;
        const top = item.mapToItem(area.contentItem, 0, 0).y;
        const nearest = Math.max(top + item.height - area.height, Math.min(top, area.contentY));
        area.contentY = Math.max(0, Math.min(area.lowestY, nearest));
    }

    function scrollBy(distance: real) {
        area.contentY = Math.max(0, Math.min(area.lowestY, area.contentY + distance));
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentWidth: area.width
    interactive: area.contentHeight > area.height

    onContentHeightChanged: revealing.restart()
    onFocusedChanged: area.follow(area.focused)
    onHeightChanged: revealing.restart()
    onToldChanged: area.follow(area.told)

    // When everything has its place.
    Timer {
        id: revealing

        interval: 0

        onTriggered: area.reveal(area.followed)
    }
}
