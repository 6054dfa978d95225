#include "PictureBook.h"

#include "SettingsWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QQuickItem>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace {

constexpr int lowestPage = 667;
constexpr int highestPage = 4000;
constexpr int mostGuesses = 10;
/// What is asked for at once is there after so many rounds of events.
constexpr int settlingRounds = 20;
constexpr const char* photoSheetName = "photoSheet";

struct Entry {
    const char* identifier;
    const char* name;
};
constexpr std::array<Entry, 6> entries { { { "Calls", "calls" }, { "Messages", "messages" },
    { "Bluetooth", "bluetooth" }, { "TDSimSettingsController", "sims" }, { "Misc", "misc" },
    { "VexilProducts", "products" } } };

/// The first row with that identifier; one that ends in a plus stands for all that begin like it.
int indexOf(const PageModel& page, const QString& identifier)
{
    for (int i = 0; i < page.rowCount(); ++i) {
        const QString own = page.identifier(i);
        if (page.isRow(i)
            && (own == identifier || (identifier.endsWith(QLatin1Char('+')) && own.startsWith(identifier))))
            return i;
    }
    return -1;
}

template <class Predicate>
QQuickItem* firstItem(QQuickItem* below, const Predicate& isWanted)
{
    if (below->isVisible() && isWanted(*below))
        return below;
    for (QQuickItem* child : below->childItems()) {
        if (QQuickItem* found = firstItem(child, isWanted))
            return found;
    }
    return nullptr;
}

} // namespace

Result<void> PictureBook::write()
{
    if (!QDir().mkpath(_folder))
        return Failure { _folder.toStdString() + " cannot be made" };
    writeAll();
    return _written;
}

void PictureBook::writeAll()
{
    writePage(QStringLiteral("root"));
    for (const Entry& entry : entries) {
        if (!open(QString::fromLatin1(entry.identifier)))
            continue;
        if (QLatin1String(entry.name) == QLatin1String("bluetooth"))
            turnOnFirst();
        writePage(QString::fromLatin1(entry.name));
        _window.host().returnToFirstPage();
    }
    writeSheets();
}

void PictureBook::writePage(const QString& name)
{
    settle();
    // As high as the page is, so that all of it is in the picture. A list guesses the height of what it does not show
    // yet, so the first answer need not be the last.
    for (int guess = 0; guess < mostGuesses && _window.height() != heightOfPage(); ++guess) {
        _window.resize(_window.width(), heightOfPage());
        settle();
    }
    takePicture(name);
    _window.resize(_window.width(), lowestPage);
}

int PictureBook::heightOfPage() const
{
    QQuickItem* list = firstItem(_window.rootObject(),
        [](const QQuickItem& item) { return item.isEnabled() && item.inherits("QQuickListView"); });
    if (!list)
        return _window.height();
    QMetaObject::invokeMethod(list, "forceLayout");
    const double outside = _window.height() - list->height();
    const double wanted = list->property("contentHeight").toDouble() + list->property("topMargin").toDouble()
        + list->property("bottomMargin").toDouble() + outside;
    return std::clamp(static_cast<int>(std::ceil(wanted)), lowestPage, highestPage);
}

void PictureBook::writeSheets()
{
    SettingsHost& host = _window.host();
    host.topPage()->pressRight();
    takePicture(QStringLiteral("share"));
    host.returnToFirstPage();

    if (open(QStringLiteral("Misc")) && tap(QStringLiteral("EmailLog")))
        takePicture(QStringLiteral("alert"));
    host.returnToFirstPage();

    if (!open(QStringLiteral("TDSimSettingsController")) || !tap(QStringLiteral("LOGO+")))
        return host.returnToFirstPage();
    takePicture(QStringLiteral("change-logo"));
    if (host.sheet())
        host.sheet()->choose(0);
    takePicture(QStringLiteral("photos"));
    takeCropPicture();
    if (host.sheet() && !host.sheet()->photos().isEmpty())
        host.sheet()->pickWhole(host.sheet()->photos().first());
    writePage(QStringLiteral("sims-with-logo"));
    if (tap(QStringLiteral("LOGO")) && host.sheet())
        takePicture(QStringLiteral("reset-logo"));
    host.returnToFirstPage();
}

void PictureBook::takeCropPicture()
{
    const SheetModel* library = _window.host().sheet();
    QQuickItem* sheet = firstItem(_window.rootObject(),
        [](const QQuickItem& item) { return item.objectName() == QLatin1String(photoSheetName); });
    if (!sheet || !library || library->photos().isEmpty())
        return;
    sheet->setProperty("chosen", library->photos().last());
    takePicture(QStringLiteral("crop"));
}

bool PictureBook::open(const QString& identifier)
{
    const PageModel* page = _window.host().topPage();
    return tap(identifier) && _window.host().topPage() != page;
}

bool PictureBook::tap(const QString& identifier)
{
    PageModel* page = _window.host().topPage();
    const int index = indexOf(*page, identifier);
    if (index >= 0)
        page->tap(index);
    settle();
    return index >= 0;
}

void PictureBook::turnOnFirst()
{
    PageModel* page = _window.host().topPage();
    const auto cell = std::dynamic_pointer_cast<PSControlTableCell>(page->cellAt(0));
    const auto toggle = cell ? std::dynamic_pointer_cast<UISwitch>(cell->control()) : nullptr;
    if (!toggle || toggle->isOn())
        return;
    _window.host().turn([&] {
        toggle->setOn_animated(true, false);
        toggle->sendActionsForControlEvents(UIControlEventValueChanged);
    });
}

void PictureBook::takePicture(const QString& name)
{
    // Light and dark of one and the same page, before anything on it is worked.
    for (const bool dark : { false, true }) {
        _window.host().setDark(dark);
        settle();
        const QLatin1String appearance(dark ? "dark" : "light");
        const QString file = QDir(_folder).filePath(QStringLiteral("%1-%2.png").arg(name, appearance));
        if (!_window.grabWindow().save(file) && _written)
            _written = Failure { file.toStdString() + " cannot be written" };
    }
    _window.host().setDark(false);
}

void PictureBook::settle()
{
    for (int round = 0; round < settlingRounds; ++round) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}
