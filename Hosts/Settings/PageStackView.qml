pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// The pages, each sliding in above the one that opened it.
FocusScope {
    id: stack

    required property SettingsHost host
    /// The page that was moved last, and how far it is out of the window.
    property int movedIndex: -1
    property real movedSlide: 0

    function coverageOf(index: int): real {
        if (index + 1 === stack.movedIndex)
            return 1 - stack.movedSlide;
        return index < stack.host.pages.depth - 1 ? 1 : 0;
    }

    clip: true

    Repeater {
        model: stack.host.pages

        delegate: PageView {
            coverage: stack.coverageOf(index)
            focus: onTop
            height: stack.height
            host: stack.host
            width: stack.width

            onSlideChanged: {
                stack.movedIndex = index;
                stack.movedSlide = slide;
            }
        }
    }
}
