#include "WindowTest.h"

#include <QElapsedTimer>

namespace {

const std::vector<QString> entries { "", "Calls", "Messages", "Bluetooth", "TDSimSettingsController", "Misc" };

constexpr int patienceMilliseconds = 20'000;

} // namespace

/// What the C++ layout computed is what stands on the screen.
class LayoutTest : public WindowTest {
protected:
    void checkRows(const std::string& where)
    {
        double lastBottom = -1e6;
        auto rows = items();
        std::sort(rows.begin(), rows.end(), [](const auto* a, const auto* b) { return a->row() < b->row(); });
        ASSERT_FALSE(rows.empty()) << where;
        for (const PageRowItem* row : rows) {
            const std::string place = where + " row " + std::to_string(row->row());
            EXPECT_GE(row->y(), lastBottom - 0.01) << place;
            lastBottom = row->y() + row->height();
            if (row->cell())
                checkCell(*row, place);
        }
    }

    void checkCell(const PageRowItem& row, const std::string& place)
    {
        PSTableCell& cell = *row.cell();
        EXPECT_EQ(row.width(), cell.frame().width) << place;
        EXPECT_EQ(row.height(), cell.frame().height) << place;
        EXPECT_EQ(row.height(), cell.preferredHeightForWidth(row.width())) << place;
        EXPECT_EQ(cell.specifier(), page().list()->specifiers()[static_cast<std::size_t>(row.row())]) << place;
        const auto control = std::dynamic_pointer_cast<PSControlTableCell>(row.cell());
        if (control && control->control()) {
            const CGRect frame = control->control()->frame();
            EXPECT_EQ(row.controlFrame(), QRectF(frame.x, frame.y, frame.width, frame.height)) << place;
            EXPECT_LE(frame.maxY(), row.height()) << place;
        }
        checkLabel(*cell.textLabel(), row, place);
        if (cell.detailTextLabel())
            checkLabel(*cell.detailTextLabel(), row, place);
    }

    /// Nothing of a text is cut.
    void checkLabel(const UILabel& label, const PageRowItem& row, const std::string& place)
    {
        const CGSize needed = label.sizeThatFits(label.frame().width);
        EXPECT_LE(needed.height, label.frame().height) << place;
        EXPECT_LE(needed.width, label.frame().width + 0.5) << place;
        EXPECT_GE(label.frame().y, 0) << place;
        EXPECT_LE(label.frame().maxY(), row.height()) << place;
    }
};

TEST_F(LayoutTest, FramesAreThoseOfTheCells)
{
    openWindow();
    for (const QString& entry : entries) {
        if (!entry.isEmpty())
            openPage(entry);
        for (const int width : { 320, 375, 1024 }) {
            for (const double scale : { 1.0, 2.0 }) {
                for (const bool dark : { false, true }) {
                    _window->resize(width, 1400);
                    host().theme()->setTextScale(scale);
                    host().setDark(dark);
                    settle();
                    checkRows(entry.toStdString() + " " + std::to_string(width) + " " + std::to_string(scale));
                }
            }
        }
        host().returnToFirstPage();
        settle();
    }
}

TEST_F(LayoutTest, ARowIsAsHighAsThePageExpectsUntilItsCellIsMade)
{
    openWindow();
    openPage("Calls");
    host().theme()->setTextScale(2);
    settle();
    for (const auto& [identifier, expected] :
        { std::pair("TandemSimSelectionTimeForCalls", 70.0), std::pair("TandemEnabledCalls", 44.0) }) {
        PageRowItem row;
        auto& making = static_cast<QQmlParserStatus&>(row);
        making.classBegin();
        row.setWidth(320);
        row.setPage(&page());
        row.setRow(indexOf(identifier));
        EXPECT_EQ(row.implicitHeight(), expected) << identifier;
        EXPECT_EQ(row.cell(), nullptr) << identifier;
        making.componentComplete();
        EXPECT_GT(row.implicitHeight(), expected) << identifier;
    }
}

TEST_F(LayoutTest, AChangeByAnotherProcessIsShownWithoutLosingThePlace)
{
    openWindow();
    openPage("Messages");
    _window->resize(375, 400);
    settle();
    list()->setProperty("contentY", 200);
    settle();
    const auto rows = items();
    const auto seen = std::ranges::find_if(rows, [this](const PageRowItem* row) {
        const double top = row->mapToItem(list(), QPointF()).y();
        return top > 0 && top + row->height() < list()->height();
    });
    ASSERT_NE(seen, rows.end());
    const PageRowItem* row = *seen;
    QProcess other;
    other.start(
        QStringLiteral(TANDEM_DRIVER), { "--root", _root.path(), "set", "messages", "TandemEnabledIMToText", "on" });
    ASSERT_TRUE(other.waitForFinished());
    ASSERT_EQ(other.exitCode(), 0);
    QElapsedTimer watch;
    watch.start();
    const auto isOn = [this] {
        const auto cell =
            std::dynamic_pointer_cast<PSControlTableCell>(page().cellAt(indexOf("TandemEnabledIMToText")));
        return std::static_pointer_cast<UISwitch>(cell->control())->isOn();
    };
    while (!isOn() && watch.elapsed() < patienceMilliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_TRUE(isOn());
    // To be read with --gtest_output; 200 milliseconds are promised.
    RecordProperty("milliseconds", static_cast<int>(watch.elapsed()));
    settle();
    EXPECT_EQ(list()->property("contentY").toInt(), 200);
    const auto now = items();
    EXPECT_NE(std::find(now.begin(), now.end(), row), now.end());
}
