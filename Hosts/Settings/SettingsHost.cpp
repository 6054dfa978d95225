#include "SettingsHost.h"

#include "Picture.h"
#include "TextBlock.h"
#include "UIKit/UIImage.h"
#include "UIKit/UIViewAnimation.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlEngine>

#include <fstream>
#include <iterator>

namespace {

constexpr CGSize firstSize { 375, 667 };
/// The sheet that goes may be followed by one more while it moves.
constexpr std::size_t goneSheetsKept = 2;

} // namespace

SettingsHost::SettingsHost(std::unique_ptr<Theme> theme)
    : _theme(std::move(theme))
{
    QQmlEngine::setObjectOwnership(_theme.get(), QQmlEngine::CppOwnership);
    QQmlEngine::setObjectOwnership(&_pages, QQmlEngine::CppOwnership);
}

SettingsHost::~SettingsHost()
{
    UIViewAnimations::shared().setObserver(nullptr);
}

Result<std::shared_ptr<SettingsHost>> SettingsHost::open(
    const HostOptions& options, std::unique_ptr<Theme> theme, const HostSession::PhoneDecorator& decorate)
{
    std::shared_ptr<SettingsHost> host(new SettingsHost(std::move(theme)));
    auto session = HostSession::open(options, [&](Phone& phone) {
        phone.textMeasure = std::make_shared<QtTextMeasure>(*host->_theme);
        if (decorate)
            decorate(phone);
    });
    if (!session)
        return session.failure();
    host->_session = std::move(*session);
    host->_session->setAppearanceObserver([&host = *host] { host.followAppearance(); });
    UIViewAnimations::shared().setObserver(
        [&host = *host](const UIViewAnimation& animation) { host._fadeSeconds = animation.duration; });
    if (const auto opened = host->_session->openRootPage(host, firstSize); !opened)
        return opened.failure();
    // The desktop has had the time of all the above to answer.
    host->followAppearance();
    host->showNotice();
    return host;
}

void SettingsHost::showNotice()
{
    const auto& notice = _session->notice();
    if (!notice)
        return;
    const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
        "Pairo", *notice, UIAlertControllerStyle::Alert);
    alert->addAction({ "OK", UIAlertActionStyle::Cancel, nullptr });
    _session->rootPage()->presentViewController_animated_completion(alert, true, nullptr);
}

void SettingsHost::turn(const std::function<void()>& act)
{
    // Showing what a turn changed may ask for more, which belongs to the same turn.
    if (_inTurn) {
        act();
        return;
    }
    struct Ending {
        bool& inTurn;
        ~Ending() { inTurn = false; }
    } ending { _inTurn = true };
    _session->turn(act);
}

void SettingsHost::closeImageContexts() const
{
    // In a turn, a page may be about to draw.
    if (!_inTurn)
        UIGraphicsDrainImageContexts();
}

void SettingsHost::startFollowing()
{
    connect(&_watcher, &QFileSystemWatcher::fileChanged, this, &SettingsHost::catchUp);
    connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, &SettingsHost::catchUp);
    qGuiApp->installEventFilter(this);
    _session->setDataObserver([this] { turn([] {}); });
    if (BusContext* context = _session->busContext())
        _busLoop = std::make_unique<BusLoop>(*context);
    catchUp();
}

void SettingsHost::watchSettings()
{
    QStringList paths { QString::fromStdString(_session->files()->hostPath(SettingsFile::path)) };
    for (const std::string& folder : _session->watchedFolders())
        paths.append(QString::fromStdString(folder));
    for (const QString& path : paths) {
        const bool isWatched = _watcher.files().contains(path) || _watcher.directories().contains(path);
        if (!isWatched && QFileInfo::exists(path))
            _watcher.addPath(path);
    }
}

void SettingsHost::catchUp()
{
    // A file that was replaced is another one to the watcher. First, so that nothing that changes meanwhile is missed.
    watchSettings();
    turn([this] { _session->showCompanions(); });
}

bool SettingsHost::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        _theme->setShowsFocus(true);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        _theme->setShowsFocus(false);
        break;
    case QEvent::ApplicationPaletteChange:
        if (watched == qGuiApp)
            followPalette();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void SettingsHost::followPalette()
{
    // Another phone says itself how it looks.
    if (!_session->demoPhone())
        return;
    const QPalette palette = QGuiApplication::palette();
    setDark(palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness());
}

void SettingsHost::followAppearance()
{
    if (const auto& appearance = Phone::current().appearance)
        _theme->follow(*appearance);
}

void SettingsHost::setDark(bool dark)
{
    turn([&] { _session->setDarkAppearance(dark); });
    _theme->setDark(Phone::current().appearance ? Phone::current().appearance->isDark() : dark);
}

void SettingsHost::goBack()
{
    if (PageModel* page = topPage())
        page->goBack();
}

void SettingsHost::returnToFirstPage()
{
    turn([this] {
        UINavigationController& navigation = _session->navigation();
        while (navigation.topViewController()->presentedViewController())
            navigation.topViewController()->dismissViewControllerAnimated_completion(false, nullptr);
        while (navigation.popViewControllerAnimated(false))
            ;
    });
}

QImage SettingsHost::photo(const QString& file) const
{
    std::ifstream stream(QFile::encodeName(file).toStdString(), std::ios::binary);
    if (!stream)
        return {};
    const auto image = UIImage::imageWithData(Bytes(std::istreambuf_iterator<char>(stream), {}));
    return image ? imageOf(*image) : QImage();
}

void SettingsHost::pageIsShown()
{
    PageModel* page = topPage();
    if (!page || !std::exchange(_hasNewPage, false))
        return;
    turn([this] { _session->navigation().topPageIsShown(); });
    page->refresh();
}

void SettingsHost::willPush(const std::shared_ptr<UIViewController>& page)
{
    const auto& stack = _session->navigation().viewControllers();
    const auto below = stack.size() < 2 ? nullptr : stack[stack.size() - 2];
    emit sceneChanged();
    _coming = std::make_shared<PageModel>(page, below, *this);
    if (_coming->list())
        _coming->list()->table().setObserver(_coming);
}

void SettingsHost::didPush(const std::shared_ptr<UIViewController>& /*page*/)
{
    const auto page = std::exchange(_coming, nullptr);
    page->pageDidLoad();
    _pages.push(page);
    _hasNewPage = true;
}

void SettingsHost::didPop(const std::shared_ptr<UIViewController>& page)
{
    _pages.pop(*page);
    _hasNewPage = true;
    emit sceneChanged();
}

void SettingsHost::didPresent(const std::shared_ptr<UIViewController>& controller)
{
    QStringList photos;
    if (dynamic_cast<const UIImagePickerController*>(controller.get())) {
        for (const std::string& photo : _session->photos())
            photos.push_back(QString::fromStdString(photo));
    }
    retireSheet();
    _sheet = std::make_shared<SheetModel>(controller, photos, *this);
    QQmlEngine::setObjectOwnership(_sheet.get(), QQmlEngine::CppOwnership);
    emit sheetChanged();
    emit sceneChanged();
}

void SettingsHost::didDismiss(const std::shared_ptr<UIViewController>& controller)
{
    if (!_sheet || _sheet->controller() != controller)
        return;
    retireSheet();
    emit sheetChanged();
    emit sceneChanged();
}

void SettingsHost::retireSheet()
{
    if (_sheet)
        _goneSheets.push_back(std::exchange(_sheet, nullptr));
    if (_goneSheets.size() > goneSheetsKept)
        _goneSheets.erase(_goneSheets.begin());
}
