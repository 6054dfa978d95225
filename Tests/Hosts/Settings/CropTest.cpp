#include "CropItem.h"
#include "Hand.h"
#include "WindowTest.h"

#include <QTest>
#include <QWheelEvent>

namespace {

constexpr int photoWidth = 241;
constexpr int photoHeight = 161;
const QString sim = QStringLiteral("6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");

/// So many grey levels from one pixel to the next: a place in the photo is known by its colours.
constexpr int levelsPerPixel = 4;
/// The square's edges lie between pixels, and the screen has more points than the photo has pixels.
constexpr int greatestDifference = 6;
/// Beside the white line around the square.
constexpr double firstProbe = 0.03;
constexpr int probes = 24;

/// Up to 255, down to 0, and so on.
int wave(int pixel)
{
    const int place = pixel * levelsPerPixel % 510;
    return place < 256 ? place : 510 - place;
}

bool writePhoto(const QString& file)
{
    QImage photo(photoWidth, photoHeight, QImage::Format_RGB32);
    for (int y = 0; y < photoHeight; ++y) {
        for (int x = 0; x < photoWidth; ++x)
            photo.setPixel(x, y, qRgb(wave(x), wave(y), x < photoWidth / 2 ? 0 : 255));
    }
    return photo.save(file);
}

/// The greatest difference between the pictures, held against each other at the same parts of their sides.
int differenceBetween(const QImage& a, const QImage& b)
{
    const auto at = [](const QImage& picture, int column, int row) {
        const auto place = [](int probe, int extent) {
            const double part = firstProbe + (1 - 2 * firstProbe) * probe / probes;
            return std::clamp(static_cast<int>(part * extent), 0, extent - 1);
        };
        return picture.pixel(place(column, picture.width()), place(row, picture.height()));
    };
    int difference = 0;
    for (int row = 0; row <= probes; ++row) {
        for (int column = 0; column <= probes; ++column) {
            const QRgb first = at(a, column, row);
            const QRgb second = at(b, column, row);
            difference = std::max(
                { difference, std::abs(qRed(first) - qRed(second)), std::abs(qGreen(first) - qGreen(second)) });
        }
    }
    return difference;
}

} // namespace

/// A photo is moved and enlarged under the square; what the square shows is what is picked.
class CropTest : public WindowTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(writePhoto(_phoneFolder.filePath("photo.png")));
        QFile description(_phoneFolder.filePath("phone.json"));
        ASSERT_TRUE(description.open(QIODevice::WriteOnly));
        const Json phone { { "scale", 2 },
            { "subscriptions",
                { { { "uuid", sim.toStdString() }, { "label", "Personal" }, { "phoneNumber", "+12025550143" },
                    { "carrier", "Larkspur Mobile" }, { "userDefaultVoice", true } } } },
            { "photos", { "photo.png" } } };
        description.write(QByteArray::fromStdString(phone.dump()));
        description.close();
        _phone = description.fileName().toStdString();

        openWindow();
        openPage("TDSimSettingsController");
        page().tap(indexOf("LOGO+" + sim));
        settle();
        press(findButton(_window->rootObject(), "Change"));
        press(findItem(_window->rootObject(),
            [](const QQuickItem& item) { return item.metaObject()->indexOfSignal("taken()") >= 0; }));
        ASSERT_TRUE(crop());
        _before = shown();
    }

    void press(QQuickItem* item)
    {
        ASSERT_TRUE(item);
        Hand::on(Device::Mouse, *_window)->press(*item);
    }
    CropItem* crop()
    {
        return dynamic_cast<CropItem*>(
            findItem(_window->rootObject(), [](const QQuickItem& item) { return item.inherits("CropItem"); }));
    }
    QPoint middle() { return crop()->mapToScene(crop()->square().center()).toPoint(); }
    QImage shown()
    {
        settle();
        return _window->grabWindow().copy(crop()->mapRectToScene(crop()->square()).toAlignedRect());
    }
    int sideOfCropped() { return crop()->cropped().width(); }

    /// Picks what is shown, which must be another part of the photo than at first.
    void chooseAndCompare()
    {
        const QImage square = shown();
        EXPECT_GT(differenceBetween(square, _before), greatestDifference);
        press(findButton(_window->rootObject(), "Choose"));
        EXPECT_FALSE(host().sheet());
        comparePicked(square);
    }
    void comparePicked(const QImage& square)
    {
        const QImage picked(_root.filePath("var/mobile/Library/Preferences/Tandem/" + sim + ".png"));
        ASSERT_FALSE(picked.isNull());
        EXPECT_EQ(picked.width(), picked.height());
        EXPECT_LE(differenceBetween(square, picked), greatestDifference);
    }

    void drag(QPoint way)
    {
        QTest::mousePress(_window.get(), Qt::LeftButton, {}, middle());
        for (int part = 1; part <= 10; ++part)
            QTest::mouseMove(_window.get(), middle() + way * part / 10);
        QTest::mouseRelease(_window.get(), Qt::LeftButton, {}, middle() + way);
        settle();
    }
    void turnWheel(int angle)
    {
        QWheelEvent event(middle(), _window->mapToGlobal(middle()), {}, { 0, angle }, Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(_window.get(), &event);
        settle();
    }
    /// Two fingers, from so far on either side of the middle to so far.
    void pinch(int from, int to)
    {
        const QPoint place = middle();
        constexpr int steps = 10;
        for (int step = 0; step <= steps; ++step) {
            const QPoint reach(from + (to - from) * step / steps, 0);
            {
                auto touch = QTest::touchEvent(_window.get(), touchScreen());
                if (step == 0)
                    touch.press(0, place - reach, _window.get()).press(1, place + reach, _window.get());
                else
                    touch.move(0, place - reach, _window.get()).move(1, place + reach, _window.get());
            }
            showFrames();
        }
        QTest::touchEvent(_window.get(), touchScreen())
            .release(0, place - QPoint(to, 0), _window.get())
            .release(1, place + QPoint(to, 0), _window.get());
        settle();
    }
    void type(Qt::Key key, int times)
    {
        for (int i = 0; i < times; ++i)
            QTest::keyClick(_window.get(), key);
        settle();
    }

    QTemporaryDir _phoneFolder;
    QImage _before;
};

TEST_F(CropTest, AsItComesTheWholeHeightIsShown)
{
    EXPECT_EQ(sideOfCropped(), photoHeight);
    press(findButton(_window->rootObject(), "Choose"));
    comparePicked(_before);
}

TEST_F(CropTest, DraggedByTheMouse)
{
    drag({ 60, 0 });
    chooseAndCompare();
}

TEST_F(CropTest, DraggedBeyondItsEdge)
{
    // Neither can it be taken from the square.
    for (int i = 0; i < 3; ++i)
        drag({ 150, 150 });
    EXPECT_EQ(sideOfCropped(), photoHeight);
    const QImage photo(_phoneFolder.filePath("photo.png"));
    EXPECT_EQ(crop()->cropped().convertToFormat(QImage::Format_RGB32), photo.copy(0, 0, photoHeight, photoHeight));
    chooseAndCompare();
}

TEST_F(CropTest, DraggedByAFinger)
{
    const QPoint place = middle();
    QTest::touchEvent(_window.get(), touchScreen()).press(0, place, _window.get());
    for (int x = 10; x <= 60; x += 10) {
        QTest::touchEvent(_window.get(), touchScreen()).move(0, place - QPoint(x, 0), _window.get());
        showFrames();
    }
    QTest::touchEvent(_window.get(), touchScreen()).release(0, place - QPoint(60, 0), _window.get());
    chooseAndCompare();
}

TEST_F(CropTest, PinchedLargerAndSmaller)
{
    pinch(40, 120);
    const int close = sideOfCropped();
    EXPECT_LT(close, photoHeight / 2);
    pinch(120, 90);
    EXPECT_GT(sideOfCropped(), close);
    EXPECT_LT(sideOfCropped(), photoHeight);
    chooseAndCompare();
}

TEST_F(CropTest, EnlargedByTheWheel)
{
    for (int i = 0; i < 4; ++i)
        turnWheel(120);
    const int close = sideOfCropped();
    EXPECT_LT(close, photoHeight * 2 / 3);
    turnWheel(-120);
    EXPECT_GT(sideOfCropped(), close);
    chooseAndCompare();
}

TEST_F(CropTest, SmallerThanTheSquareItNeverGets)
{
    turnWheel(-1200);
    pinch(120, 20);
    type(Qt::Key_Minus, 10);
    EXPECT_EQ(sideOfCropped(), photoHeight);
}

TEST_F(CropTest, MovedAndEnlargedByKeys)
{
    type(Qt::Key_Plus, 6);
    const int close = sideOfCropped();
    EXPECT_LT(close, photoHeight);
    type(Qt::Key_Minus, 1);
    EXPECT_GT(sideOfCropped(), close);
    const QImage before = crop()->cropped();
    type(Qt::Key_Right, 2);
    type(Qt::Key_Down, 1);
    EXPECT_NE(crop()->cropped(), before);
    type(Qt::Key_Left, 2);
    type(Qt::Key_Up, 1);
    EXPECT_EQ(crop()->cropped(), before);
    type(Qt::Key_Left, 1);
    type(Qt::Key_Up, 3);
    const QImage square = shown();
    type(Qt::Key_Return, 1);
    EXPECT_FALSE(host().sheet());
    comparePicked(square);
}

TEST_F(CropTest, CroppedSquareAtEveryZoom)
{
    for (int i = 0; i < 20; ++i) {
        const QImage cropped = crop()->cropped();
        ASSERT_EQ(cropped.width(), cropped.height()) << i;
        type(Qt::Key_Plus, 1);
        drag({ 3 + i, 5 });
    }
}

TEST_F(CropTest, EscapeLeavesThePhotoAndThenTheLibrary)
{
    type(Qt::Key_Escape, 1);
    ASSERT_TRUE(host().sheet());
    EXPECT_FALSE(crop());
    type(Qt::Key_Escape, 1);
    EXPECT_FALSE(host().sheet());
    EXPECT_FALSE(QFile::exists(_root.filePath("var/mobile/Library/Preferences/Tandem/" + sim + ".png")));
}

TEST_F(CropTest, TakenAgainItIsAsItComes)
{
    type(Qt::Key_Plus, 6);
    type(Qt::Key_Escape, 1);
    type(Qt::Key_Return, 1);
    ASSERT_TRUE(crop());
    EXPECT_EQ(sideOfCropped(), photoHeight);
}
