pragma ComponentBehavior: Bound

import QtQuick
import Tandem.Settings

/// A page with its bar: slides in from the end when it is pushed, follows the finger from the edge, and slides out.
FocusScope {
    id: view

    required property SettingsHost host
    required property PageModel page
    required property int index
    /// How much of this page the one above it covers, from 0 to 1.
    required property real coverage
    /// How far this page is out of the window, from 0 to 1.
    property real slide: view.page.first || !view.theme.animated ? 0 : 1

    readonly property Theme theme: view.host.theme
    /// What the keyboard works while nothing of the bar is chosen.
    readonly property Item content: view.page.link === "" ? list : linkLoader
    readonly property bool leaving: view.page.leaving
    readonly property bool onTop: view.index === view.host.pages.depth - 1
    readonly property int direction: view.theme.mirrored ? -1 : 1
    readonly property int slideDuration: 320
    readonly property int edgeWidth: 20
    /// A page under another moves this much more slowly, and is darkened this much.
    readonly property real parallax: 0.3
    readonly property real shade: 0.12
    /// Let go beyond this, or faster than this in points a second, the page goes.
    readonly property real decisiveSlide: 0.4
    readonly property real decisiveSpeed: 500

    function settle() {
        const target = view.page.leaving ? 1 : 0;
        if (view.theme.animated && view.slide !== target) {
            settling.to = target;
            settling.restart();
            return;
        }
        settling.stop();
        view.slide = target;
        view.finish();
    }

    function finish() {
        if (view.page.leaving)
            view.host.pages.hasLeft(view.page);
    }

    enabled: view.onTop
    visible: view.slide < 1 && view.coverage < 1
    x: view.direction * view.width * (view.slide - view.parallax * view.coverage)

    Component.onCompleted: {
        view.page.liveWith(view);
        if (view.page.link !== "")
            linkLoader.setSource("LinkPage.qml", {
                    "page": view.page,
                    "theme": view.theme
                });
        view.settle();
    }
    Keys.onEscapePressed: view.page.goBack()
    onLeavingChanged: view.settle()
    onOnTopChanged: {
        if (view.onTop)
            view.content.forceActiveFocus();
    }

    NumberAnimation {
        id: settling

        duration: view.slideDuration
        easing.type: Easing.OutCubic
        property: "slide"
        target: view

        onFinished: view.finish()
    }

    Rectangle {
        anchors.fill: parent
        color: view.theme.page
    }

    NavigationBar {
        id: bar

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        page: view.page
        theme: view.theme
    }

    PageList {
        id: list

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: bar.bottom
        focus: view.content === list
        page: view.page
        theme: view.theme
        visible: view.page.link === ""
    }

    Loader {
        id: linkLoader

        anchors.fill: list
        focus: view.content === linkLoader
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: view.shade * view.coverage
        visible: view.coverage > 0
    }

    Item {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.top: bar.bottom
        enabled: view.onTop && !view.page.first
        width: view.edgeWidth

        DragHandler {
            id: swipe

            target: null
            yAxis.enabled: false

            onActiveChanged: {
                if (swipe.active) {
                    settling.stop();
                    return;
                }
                const speed = view.direction * swipe.centroid.velocity.x;
                if (view.slide > view.decisiveSlide || speed > view.decisiveSpeed)
                    view.page.goBack();
                if (!view.page.leaving)
                    view.settle();
            }
            onTranslationChanged: {
                if (swipe.active)
                    view.slide = Math.max(0, Math.min(1, view.direction * swipe.translation.x / view.width));
            }
        }
    }
}
