#include "SameStepsTest.h"

#include "CropItem.h"

#include <QTest>

namespace {

const QString headset = QStringLiteral("12:34:56:AB:CD:03");
const QString carKit = QStringLiteral("12:34:56:AB:CD:01");
const QString personal = QStringLiteral("6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");
const QString work = QStringLiteral("B82E94D7-0C56-4F3B-8E1A-71D0A6F52C89");

} // namespace

/// Every control of every page, by mouse, by touch and by keyboard.
class EveryControlTest : public SameStepsTest, public testing::WithParamInterface<Device> {
protected:
    void open(const QString& entry)
    {
        begin();
        _hand = Hand::on(GetParam(), *_window);
        enter(entry);
    }
    void enter(const QString& entry)
    {
        pressRow(entry);
        EXPECT_FALSE(page().isFirst());
    }
    void leave()
    {
        step("back", [this] { pressBack(); }, { { "do", "back" } });
        EXPECT_TRUE(page().isFirst());
    }
    void pressBack()
    {
        QQuickItem* back = findItem(_window->rootObject(),
            [](const QQuickItem& item) { return item.property("name").toString().startsWith(QLatin1String("Back")); });
        ASSERT_TRUE(back);
        _hand->press(*back);
    }

    void pressRow(const QString& identifier)
    {
        step(
            "press " + identifier.toStdString(), [&] { press(item(identifier), identifier); }, tapRequest(identifier));
    }
    void pressButton(const QString& text) { press(button(text), text); }
    void press(QQuickItem* item, const QString& name)
    {
        if (item)
            _hand->press(*item);
        else
            ADD_FAILURE() << name.toStdString() << " is not there";
    }
    void choose(const QString& title)
    {
        step("choose " + title.toStdString(), [&] { pressButton(title); },
            { { "do", "choose" }, { "title", title.toStdString() } });
    }

    void turn(const QString& identifier)
    {
        PageRowItem* row = item(identifier);
        ASSERT_TRUE(row) << identifier.toStdString();
        const bool wanted = !row->isChecked();
        step("turn " + identifier.toStdString(), [&] { _hand->turn(*row); },
            { { "do", "set" }, { "row", identifier.toStdString() }, { "value", wanted } });
        const PageRowItem* after = item(identifier);
        EXPECT_TRUE(after && after->isChecked() == wanted) << identifier.toStdString();
    }
    void slide(const QString& identifier, double value)
    {
        PageRowItem* row = item(identifier);
        ASSERT_TRUE(row) << identifier.toStdString();
        step("slide " + identifier.toStdString(), [&] { _hand->slide(*row, value); },
            { { "do", "set" }, { "row", identifier.toStdString() }, { "value", value } });
        EXPECT_EQ(row->value(), value) << identifier.toStdString();
    }

    /// Each switch off and on or on and off, each slider there and back; each row that comes by a switch, too.
    void workEverything()
    {
        QStringList worked;
        for (int i = 0; i < page().rowCount(); ++i)
            workControl(page().identifier(i), worked);
        ASSERT_FALSE(worked.isEmpty());
    }
    void workControl(const QString& identifier, QStringList& worked)
    {
        const PageRowItem* row = identifier.isEmpty() || worked.contains(identifier) ? nullptr : item(identifier);
        if (!row || !row->isWorkable())
            return;
        if (row->kind() == PageRowItem::Kind::Slider) {
            const double before = row->value();
            slide(identifier, row->maximumValue());
            slide(identifier, row->minimumValue());
            slide(identifier, before + 2);
        } else if (row->kind() == PageRowItem::Kind::Switch) {
            turn(identifier);
            turn(identifier);
        } else {
            return;
        }
        worked.push_back(identifier);
    }

    /// The sheet of the SIM's logo is up.
    void pickPhoto(int photo)
    {
        choose("Change");
        pressPhoto(photo);
        const auto* crop = dynamic_cast<CropItem*>(
            findItem(_window->rootObject(), [](const QQuickItem& item) { return item.inherits("CropItem"); }));
        ASSERT_TRUE(crop);
        const QString file = _pictures.filePath("picked.png");
        ASSERT_TRUE(crop->cropped().save(file));
        step("pick", [&] { pressButton("Choose"); }, { { "do", "pick" }, { "image", file.toStdString() } });
        EXPECT_FALSE(host().sheet());
    }
    void pressPhoto(int photo)
    {
        ownStep(
            "photo", [&] { press(tile(photo), QStringLiteral("photo")); }, Json::array());
    }
    QQuickItem* tile(int photo)
    {
        return findItem(_window->rootObject(), [&](const QQuickItem& item) {
            return item.metaObject()->indexOfSignal("taken()") >= 0 && item.property("index").toInt() == photo;
        });
    }

    QTemporaryDir _pictures;
    std::unique_ptr<Hand> _hand;
};

TEST_P(EveryControlTest, Root)
{
    begin();
    _hand = Hand::on(GetParam(), *_window);
    turn("TandemEnabled");
    EXPECT_EQ(indexOf("Calls"), -1);
    turn("TandemEnabled");
    QStringList entries;
    for (int i = 0; i < page().rowCount(); ++i) {
        if (page().isRow(i) && item(page().identifier(i))->kind() == PageRowItem::Kind::Button)
            entries.push_back(page().identifier(i));
    }
    EXPECT_EQ(entries.size(), 6);
    for (const QString& entry : entries) {
        enter(entry);
        leave();
    }
}

TEST_P(EveryControlTest, Calls)
{
    open("Calls");
    workEverything();
    leave();
}

TEST_P(EveryControlTest, Messages)
{
    open("Messages");
    workEverything();
    leave();
}

TEST_P(EveryControlTest, BluetoothDevices)
{
    open("Bluetooth");
    turn(carKit);
    turn(headset);
    for (const QString& device : { carKit, headset }) {
        // The default SIM's, which is chosen already; the other's; and back.
        for (const QString& sim : { personal, work, work, personal }) {
            pressRow(device + "+" + sim);
            EXPECT_TRUE(item(device + "+" + sim)->isChecked());
        }
    }
    pressRow(headset + "+" + work);
    EXPECT_FALSE(item(headset + "+" + personal)->isChecked());
    turn(carKit);
    turn(headset);
    turn(headset);
    leave();
}

TEST_P(EveryControlTest, SimLogos)
{
    open("TDSimSettingsController");
    pressRow("LOGO+" + personal);
    choose("Cancel");
    pressRow("LOGO+" + personal);
    pickPhoto(1);
    pressRow("LOGO+" + work);
    pickPhoto(0);
    pressRow("LOGO+" + work);
    choose("Reset");
    pressRow("LOGO");
    choose("Cancel");
    pressRow("LOGO");
    choose("Reset All");
    EXPECT_EQ(indexOf("LOGO"), -1);
    leave();
}

TEST_P(EveryControlTest, PhotosWithoutChoosing)
{
    open("TDSimSettingsController");
    pressRow("LOGO+" + personal);
    choose("Change");
    pressPhoto(2);
    ownStep(
        "leave the photo", [&] { pressButton("Cancel"); }, Json::array());
    ASSERT_TRUE(host().sheet());
    EXPECT_TRUE(tile(2));
    step("leave the photos", [&] { pressButton("Cancel"); }, { { "do", "pick" }, { "image", nullptr } });
    EXPECT_FALSE(host().sheet());
    leave();
}

TEST_P(EveryControlTest, LoggingAndSupport)
{
    open("Misc");
    pressRow("EmailLog");
    // The driver's user has read the alert when it was printed.
    ownStep(
        "read the alert", [&] { pressButton("OK"); }, Json::array());
    EXPECT_FALSE(host().sheet());
    workEverything();
    turn("TandemLoggingEnabled");
    pressRow("EmailLog");
    EXPECT_EQ(host().session().demoPhone()->drafts().size(), 1U);
    leave();
    // A page that logs, so that there is something to send.
    enter("TDSimSettingsController");
    leave();
    enter("Misc");
    pressRow("EmailLog");
    leave();
}

TEST_P(EveryControlTest, Products)
{
    open("VexilProducts");
    const Json link { { "event", "link" }, { "url", page().link().toStdString() } };
    ownStep(
        "open again", [&] { pressButton("Open Again"); }, Json::array({ link }));
    leave();
}

TEST_P(EveryControlTest, Share)
{
    begin();
    _hand = Hand::on(GetParam(), *_window);
    const Json share { { "do", "hook" }, { "name", "shareAction:" }, { "value", nullptr } };
    step(
        "share", [&] { pressButton("Share"); }, share);
    ASSERT_TRUE(host().sheet());
    ownStep(
        "copy", [&] { pressButton("Copy"); }, Json::array());
    step("done", [&] { pressButton("Done"); }, { { "do", "choose" }, { "title", "Cancel" } });
    EXPECT_FALSE(host().sheet());
}

INSTANTIATE_TEST_SUITE_P(By, EveryControlTest, testing::Values(Device::Mouse, Device::Touch, Device::Keyboard), nameOf);
