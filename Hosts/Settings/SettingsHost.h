#pragma once

#include "BusLoop.h"
#include "PageStack.h"
#include "Shared/HostSession.h"
#include "SheetModel.h"
#include "Theme.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <functional>
#include <memory>
#include <string>

/// The window's way to the pages: shows what they push and present, hands them what the user does, a turn for each
/// event, and catches up with changes by other processes as they happen.
class SettingsHost final : public QObject, public UIPresentationObserver {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("One a process, made by main.")
    Q_PROPERTY(Theme* theme READ theme CONSTANT)
    Q_PROPERTY(PageStack* pages READ pages CONSTANT)
    Q_PROPERTY(SheetModel* sheet READ sheet NOTIFY sheetChanged)

public:
    /// Opens the phone and its root page. The result is never null. The decorator stands before the phone's services,
    /// as for tests; null for none.
    static Result<std::shared_ptr<SettingsHost>> open(
        const HostOptions& options, std::unique_ptr<Theme> theme, const HostSession::PhoneDecorator& decorate);
    ~SettingsHost() override;

    Theme* theme() const { return _theme.get(); }
    Theme& themeObject() const { return *_theme; }
    PageStack* pages() { return &_pages; }
    PageModel* topPage() const { return _pages.top(); }
    /// What stands above the top page; null for nothing.
    SheetModel* sheet() const { return _sheet.get(); }
    HostSession& session() { return *_session; }

    /// Hands the pages one event. What they raise is logged, and the page stays as it was.
    void turn(const std::function<void()>& act);
    /// To be called when a page has made a cell: cells come into sight without a turn, which would close the image
    /// contexts that they leave open.
    void closeImageContexts() const;
    /// From now on the window follows the settings file, the phone's buses and the system's appearance.
    void startFollowing();
    void setDark(bool dark);
    /// One page back, where nothing stands above the page.
    Q_INVOKABLE void goBack();
    /// Goes back to the first page without a word to the user, as between two pictures.
    void returnToFirstPage();
    /// The page on top stands on the screen. Pages do what takes its time from here on.
    void pageIsShown();
    /// The duration of the last fade that a page asked for.
    double lastFadeSeconds() const { return _fadeSeconds; }
    /// A picture of the library, upright; a null image when it cannot be shown.
    QImage photo(const QString& file) const;

    // UIPresentationObserver
    bool showsPagesLater() const override { return true; }
    void willPush(const std::shared_ptr<UIViewController>& page) override;
    void didPush(const std::shared_ptr<UIViewController>& page) override;
    void didPop(const std::shared_ptr<UIViewController>& page) override;
    void didPresent(const std::shared_ptr<UIViewController>& controller) override;
    void didDismiss(const std::shared_ptr<UIViewController>& controller) override;

signals:
    void sheetChanged();
    /// Something else stands where the user has just tapped.
    void sceneChanged();

protected:
    // QObject
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit SettingsHost(std::unique_ptr<Theme> theme);

    void showNotice();
    void catchUp();
    void watchSettings();
    /// The sheet goes, now or under another one.
    void retireSheet();
    void followPalette();
    void followAppearance();

    std::unique_ptr<Theme> _theme;
    std::unique_ptr<HostSession> _session;
    PageStack _pages;
    std::shared_ptr<PageModel> _coming;
    std::shared_ptr<SheetModel> _sheet;
    /// Sheets that were taken down, kept while the window may still be moving them away.
    std::vector<std::shared_ptr<SheetModel>> _goneSheets;
    QFileSystemWatcher _watcher;
    /// Null on a phone without buses.
    std::unique_ptr<BusLoop> _busLoop;
    /// The page on top has not been on the screen yet.
    bool _hasNewPage = false;
    double _fadeSeconds = 0;
    bool _inTurn = false;
};
