#include "Hand.h"
#include "WindowTest.h"

#include <QClipboard>
#include <QMimeData>
#include <QTest>

namespace {

const QString personal = QStringLiteral("6F1D2C3A-84B7-4E15-9A60-2D7B5C91E3F4");
/// In the darkened page above a sheet, on a window that is high enough.
const QPoint darkness(180, 60);

} // namespace

/// What stands above a page, and what is done beside it.
class SheetTest : public WindowTest, public testing::WithParamInterface<Device> {
protected:
    void open(const QString& entry)
    {
        openWindow();
        if (!entry.isEmpty())
            openPage(entry);
        _hand = Hand::on(GetParam(), *_window);
    }
    void openChoices()
    {
        open("TDSimSettingsController");
        pressRow("LOGO+" + personal);
        ASSERT_TRUE(host().sheet());
    }
    void openPhotos()
    {
        openChoices();
        press("Change");
        ASSERT_EQ(host().sheet()->kind(), SheetModel::Kind::Photos);
    }
    void pressRow(const QString& identifier)
    {
        PageRowItem* row = item(identifier);
        ASSERT_TRUE(row);
        _hand->press(*row);
    }
    void press(const QString& text)
    {
        QQuickItem* button = findButton(_window->rootObject(), text);
        ASSERT_TRUE(button) << text.toStdString();
        _hand->press(*button);
    }
    void pressAt(QPoint place)
    {
        if (GetParam() == Device::Touch) {
            QTest::touchEvent(_window.get(), touchScreen()).press(0, place, _window.get());
            QTest::touchEvent(_window.get(), touchScreen()).release(0, place, _window.get());
        } else {
            QTest::mouseClick(_window.get(), Qt::LeftButton, {}, place);
        }
        settle();
    }
    QString shareOutcome() { return host().sheet() ? host().sheet()->outcome() : QString(); }

    std::unique_ptr<Hand> _hand;
};

TEST_P(SheetTest, BesideTheChoices)
{
    openChoices();
    pressAt(darkness);
    EXPECT_FALSE(host().sheet());
    EXPECT_EQ(page().title(), "SIM Settings");
}

TEST_P(SheetTest, OnTheQuestionItself)
{
    openChoices();
    QQuickItem* question = findItem(_window->rootObject(), [](const QQuickItem& item) {
        return item.inherits("QQuickText") && item.property("text").toString().startsWith(QLatin1String("Would you"));
    });
    ASSERT_TRUE(question);
    pressAt(question->mapToScene(question->boundingRect().center()).toPoint());
    EXPECT_TRUE(host().sheet());
}

TEST_P(SheetTest, BesideTheAlert)
{
    // An alert waits until it has been read.
    open("Misc");
    pressRow("EmailLog");
    pressAt(darkness);
    ASSERT_TRUE(host().sheet());
    EXPECT_EQ(host().sheet()->kind(), SheetModel::Kind::Alert);
    press("OK");
    EXPECT_FALSE(host().sheet());
}

TEST_P(SheetTest, BesideTheShareSheet)
{
    open({});
    press("Share");
    ASSERT_TRUE(host().sheet());
    pressAt(darkness);
    EXPECT_FALSE(host().sheet());
}

TEST_P(SheetTest, BesideThePhotosOfAWideWindow)
{
    openPhotos();
    _window->resize(1000, 700);
    settle();
    pressAt({ 40, 350 });
    EXPECT_FALSE(host().sheet());
}

TEST_P(SheetTest, TheBarOfThePageBeneathDoesNotAnswer)
{
    openChoices();
    ASSERT_FALSE(page().isFirst());
    // Where the back button is: the sheet goes, and the page stays.
    pressAt({ 20, 20 });
    EXPECT_FALSE(host().sheet());
    EXPECT_EQ(page().title(), "SIM Settings");
}

TEST_P(SheetTest, CopiedToTheClipboard)
{
    open({});
    press("Share");
    press("Copy");
    EXPECT_EQ(shareOutcome(), "Copied");
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text(), host().sheet()->message());
    EXPECT_FALSE(copied->text().isEmpty());
    EXPECT_EQ(copied->hasImage(), host().sheet()->picture().isPresent());
}

TEST_P(SheetTest, SavedAsAPicture)
{
    open({});
    press("Share");
    ASSERT_TRUE(host().sheet()->picture().isPresent());
    const QString before = shareOutcome();
    press("Save Picture");
    ASSERT_TRUE(shareOutcome().startsWith(QLatin1String("Saved as "))) << shareOutcome().toStdString();
    const QString file = shareOutcome().mid(QStringLiteral("Saved as ").size());
    EXPECT_FALSE(QImage(file).isNull());
    press("Save Picture");
    EXPECT_NE(shareOutcome(), "Saved as " + file);
    EXPECT_TRUE(shareOutcome().startsWith(QLatin1String("Saved as ")));
}

TEST_P(SheetTest, Mailed)
{
    open({});
    press("Share");
    _events->take();
    press("Mail");
    EXPECT_EQ(shareOutcome(), "Handed to the mail program");
    const Json events = _events->take();
    ASSERT_EQ(events.size(), 1U) << events;
    EXPECT_EQ(events[0]["event"], "mail");
    const auto& drafts = host().session().demoPhone()->drafts();
    ASSERT_EQ(drafts.size(), 1U);
    EXPECT_EQ(QString::fromStdString(drafts[0].body), host().sheet()->message());
    ASSERT_EQ(drafts[0].attachments.size(), 1U);
    EXPECT_FALSE(QImage(_root.path() + QString::fromStdString(drafts[0].attachments[0])).isNull());
}

INSTANTIATE_TEST_SUITE_P(By, SheetTest, testing::Values(Device::Mouse, Device::Touch, Device::Keyboard), nameOf);

/// Closed, turned round or made narrow in the middle of a sheet, a pick or a crop.
class SheetInterruptedTest : public WindowTest {
protected:
    void openCrop(Motion motion)
    {
        openWindow(motion);
        page().tap(indexOf("TDSimSettingsController"));
        page().tap(indexOf("LOGO+" + personal));
        settle();
        host().sheet()->choose(0);
        settle();
    }
    QQuickItem* photos()
    {
        return findItem(_window->rootObject(),
            [](const QQuickItem& item) { return item.objectName() == QLatin1String("photoSheet"); });
    }
    void takePhoto()
    {
        ASSERT_TRUE(photos());
        QMetaObject::invokeMethod(photos(), "take", Q_ARG(QString, host().sheet()->photos().first()));
    }
};

/// What comes up while a sheet is up already, as news of a mail that has failed does.
class CoveredSheetTest : public WindowTest { };

TEST_F(CoveredSheetTest, IsThereAgainAfterTheAlert)
{
    for (const Motion motion : { Motion::Reduced, Motion::Shown }) {
        openWindow(motion);
        openPage("TDSimSettingsController");
        page().tap(indexOf("LOGO+" + personal));
        settle();
        ASSERT_TRUE(host().sheet());
        host().turn([this] {
            const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
                "Pairo", "News", UIAlertControllerStyle::Alert);
            alert->addAction({ "OK", UIAlertActionStyle::Cancel, nullptr });
            page().controller()->topmostViewController()->presentViewController_animated_completion(
                alert, true, nullptr);
        });
        settle();
        ASSERT_TRUE(host().sheet());
        EXPECT_EQ(host().sheet()->kind(), SheetModel::Kind::Alert);
        QTest::keyClick(_window.get(), Qt::Key_Return);
        settle();
        ASSERT_TRUE(host().sheet());
        EXPECT_EQ(host().sheet()->kind(), SheetModel::Kind::Actions);
        QTest::keyClick(_window.get(), Qt::Key_Escape);
        settle();
        EXPECT_FALSE(host().sheet());
        EXPECT_EQ(page().title(), "SIM Settings");
        closeWindow();
    }
}

/// Photos by names that mean something else in addresses.
class PhotoNamesTest : public WindowTest { };

TEST_F(PhotoNamesTest, OfAnyKindAreShown)
{
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    Json photos = Json::array();
    for (const char* name : { "a#b.png", "e f?.png", "100%25.png", "\xC3\xA4&+.png" }) {
        ASSERT_TRUE(picture.save(_root.filePath(QString::fromUtf8(name)))) << name;
        photos.push_back(name);
    }
    QFile phone(_root.filePath("phone.json"));
    ASSERT_TRUE(phone.open(QIODevice::WriteOnly));
    phone.write(QByteArray::fromStdString(
        Json { { "photos", photos }, { "subscriptions", { { { "uuid", personal.toStdString() }, { "label", "A" } } } } }
            .dump()));
    phone.close();
    _phone = phone.fileName().toStdString();
    openWindow();
    openPage("TDSimSettingsController");
    page().tap(indexOf("LOGO+" + personal));
    host().sheet()->choose(0);
    settle();
    int shown = 0;
    findItem(_window->rootObject(), [&shown](const QQuickItem& item) {
        // Ready, in the toolkit's numbers.
        shown += item.inherits("QQuickImage") && item.property("status").toInt() == 1;
        return false;
    });
    EXPECT_EQ(shown, 4);
}

TEST_F(SheetInterruptedTest, ClosedWhileThePhotosComeUp)
{
    openWindow(Motion::Shown);
    page().tap(indexOf("TDSimSettingsController"));
    page().tap(indexOf("LOGO+" + personal));
    QCoreApplication::processEvents();
    host().sheet()->choose(0);
    QCoreApplication::processEvents();
    closeWindow();
    settle();
}

TEST_F(SheetInterruptedTest, ClosedWhileAPhotoIsCropped)
{
    openCrop(Motion::Shown);
    takePhoto();
    QCoreApplication::processEvents();
    closeWindow();
    settle();
}

TEST_F(SheetInterruptedTest, ClosedWhileAPhotoIsDragged)
{
    openCrop(Motion::Reduced);
    takePhoto();
    settle();
    QTest::mousePress(_window.get(), Qt::LeftButton, {}, { 180, 300 });
    QTest::mouseMove(_window.get(), { 220, 330 });
    QTest::mouseMove(_window.get(), { 240, 360 });
    closeWindow();
    settle();
}

TEST_F(SheetInterruptedTest, ClosedWhileItIsPicked)
{
    openCrop(Motion::Shown);
    takePhoto();
    settle();
    QQuickItem* choose = findButton(_window->rootObject(), "Choose");
    ASSERT_TRUE(choose);
    QMetaObject::invokeMethod(choose, "activated");
    closeWindow();
    settle();
    EXPECT_TRUE(QFile::exists(_root.filePath("var/mobile/Library/Preferences/Tandem/" + personal + ".png")));
}

TEST_F(SheetInterruptedTest, ClosedWithAFingerOnTheDarkness)
{
    openCrop(Motion::Reduced);
    QTest::touchEvent(_window.get(), touchScreen()).press(0, { 3, 300 }, _window.get());
    closeWindow();
    settle();
}

TEST_F(SheetInterruptedTest, ResizedWhileAPhotoIsCropped)
{
    openCrop(Motion::Shown);
    takePhoto();
    for (const QSize size : { QSize(1000, 700), QSize(320, 240), QSize(700, 320), QSize(375, 667) }) {
        _window->resize(size);
        settle();
        QQuickItem* choose = findButton(_window->rootObject(), "Choose");
        ASSERT_TRUE(choose);
        // Where it is when the sheet has come up.
        const auto isInside = [&] {
            return QRectF(QPointF(), size).contains(choose->mapRectToScene(choose->boundingRect()));
        };
        EXPECT_TRUE(QTest::qWaitFor(isInside)) << size.width() << " " << size.height();
    }
}
