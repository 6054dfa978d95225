import QtQuick
import Tandem.Settings

/// A row of a page. What screen readers are told of it is in RowAccess, and of a page that something covers, nothing.
PageRowItem {
    id: item

    required property int index

    Accessible.ignored: item.name === "" || !item.enabled
    Accessible.role: Accessible.ListItem
    row: item.index
}
