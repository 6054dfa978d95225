#include "SameStepsTest.h"

#include <QDirIterator>
#include <QImage>

#include <map>

namespace {

/// So high that every row of every page is on the screen, and has its cell.
constexpr int windowHeight = 1600;
/// What a line of the log begins with that a SIM's cell writes while it is made.
constexpr std::string_view cellLine = "***** Trying";
/// The settings and the logos. Log files hold the time of day; of those, as of all others, the names are compared.
constexpr const char* comparedFolder = "/var/mobile/Library/Preferences/";

/// The events of a step. When a cell is made is the host's affair: the driver makes one when it is asked for, the
/// window as soon as it shows the row. What cells log is kept apart, and the rest is in order.
struct Happened {
    Json steps = Json::array();
    Json cellLines = Json::array();

    void add(const Json& events)
    {
        for (const Json& event : events) {
            const bool isCellLine = event["event"] == "log" && event["text"].get<std::string>().starts_with(cellLine);
            (isCellLine ? cellLines : steps).push_back(event);
        }
    }
};

/// What the cell shows. Frames are left out: the driver has no fonts, and cuts texts where the window breaks them.
Json contentOf(const Json& view)
{
    if (view.is_array()) {
        Json contents = Json::array();
        for (const Json& part : view)
            contents.push_back(contentOf(part));
        return contents;
    }
    if (!view.is_object())
        return view;
    Json content = Json::object();
    for (const auto& [key, part] : view.items()) {
        if (key != "frame" && key != "lines")
            content[key] = contentOf(part);
    }
    return content;
}

std::vector<std::pair<std::string, Json>> rowsOf(const Json& reply)
{
    std::vector<std::pair<std::string, Json>> rows;
    for (const Json& row : reply["rows"])
        rows.emplace_back(row["identifier"].is_string() ? row["identifier"].get<std::string>() : "", row["value"]);
    return rows;
}

/// What makes two files the same: of a picture its pixels, as the driver is given the picture in a file that was
/// written by another program.
QByteArray essenceOf(QFile& file)
{
    const QImage picture(file.fileName());
    if (picture.isNull())
        return file.readAll();
    const QImage pixels = picture.convertToFormat(QImage::Format_RGBA8888);
    QByteArray essence = QByteArray::number(pixels.width());
    for (int row = 0; row < pixels.height(); ++row)
        essence.append(reinterpret_cast<const char*>(pixels.constScanLine(row)), 4 * qsizetype { pixels.width() });
    return essence;
}

/// What each file holds, or nothing but its name where that may differ.
std::map<std::string, QByteArray> filesBelow(const QString& root)
{
    std::map<std::string, QByteArray> files;
    QDirIterator found(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (found.hasNext()) {
        QFile file(found.next());
        const QString name = file.fileName().mid(root.size());
        const bool compared = name.startsWith(QLatin1String(comparedFolder)) && file.open(QIODevice::ReadOnly);
        files.emplace(name.toStdString(), compared ? essenceOf(file) : QByteArray());
    }
    return files;
}

std::vector<std::string> namesOf(const std::map<std::string, QByteArray>& files)
{
    std::vector<std::string> names;
    for (const auto& [name, content] : files)
        names.push_back(name);
    return names;
}

} // namespace

SameStepsTest::SameStepsTest()
{
    EXPECT_TRUE(_driverRoot.isValid());
}

void SameStepsTest::begin()
{
    openWindow();
    _window->resize(_window->width(), windowHeight);
    settle();
    _driver = std::make_unique<Driver>(_driverRoot.path());
    Json opening = _driver->ask({ { "do", "rows" } })["events"];
    // The window asks for the fade itself, to show it, and it is over before a test can listen.
    const Json fade { { "event", "fadeIn" }, { "from", 0.0 }, { "to", 1.0 }, { "seconds", host().lastFadeSeconds() } };
    ASSERT_FALSE(opening.empty());
    EXPECT_EQ(opening.front(), fade);
    opening.erase(0);
    compare("opening", opening);
}

void SameStepsTest::step(const std::string& name, const std::function<void()>& work, const Json& request)
{
    work();
    settle();
    const Json reply = _driver->ask(request);
    ASSERT_TRUE(reply.is_object()) << name << ": the driver has gone";
    EXPECT_TRUE(reply["ok"].get<bool>()) << name << ": " << reply;
    compare(name, reply["events"]);
}

void SameStepsTest::ownStep(const std::string& name, const std::function<void()>& work, const Json& events)
{
    work();
    settle();
    compare(name, events);
}

void SameStepsTest::compare(const std::string& name, const Json& events)
{
    Happened window;
    window.add(_events->take());
    Happened driver;
    driver.add(events);
    const std::size_t rows = page().list() ? page().list()->specifiers().size() : 0;
    Json looks = Json::array();
    const Json cells = driverCells(rows, looks);
    driver.add(looks);
    EXPECT_EQ(window.steps, driver.steps) << name;
    EXPECT_EQ(window.cellLines, driver.cellLines) << name;
    for (std::size_t i = 0; i < rows; ++i) {
        const auto cell = page().cellAt(static_cast<int>(i));
        EXPECT_EQ(cell ? contentOf(jsonOfCell(cell)) : Json(), contentOf(cells[i])) << name << ": cell " << i;
    }
    compareRows(name);
    compareFiles(name);
}

void SameStepsTest::compareRows(const std::string& name)
{
    const Json reply = _driver->ask({ { "do", "rows" } });
    EXPECT_TRUE(reply["events"].empty()) << name << ": " << reply["events"];
    EXPECT_EQ(reply["ok"].get<bool>(), page().list() != nullptr) << name;
    if (!page().list())
        return;
    EXPECT_EQ(page().title().toStdString(), reply["title"].get<std::string>()) << name;
    EXPECT_EQ(shownRows(), rowsOf(reply)) << name;
}

Json SameStepsTest::driverCells(std::size_t rows, Json& events)
{
    Json cells = Json::array();
    for (std::size_t i = 0; i < rows; ++i) {
        const Json reply = _driver->ask({ { "do", "cell" }, { "row", i }, { "width", 343 } });
        cells.push_back(reply.contains("cell") ? reply["cell"] : Json());
        events.insert(events.end(), reply["events"].begin(), reply["events"].end());
    }
    return cells;
}

void SameStepsTest::compareFiles(const std::string& name)
{
    const auto window = filesBelow(_root.path());
    const auto driver = filesBelow(_driverRoot.path());
    EXPECT_EQ(namesOf(window), namesOf(driver)) << name;
    for (const auto& [file, content] : window) {
        const auto same = driver.find(file);
        EXPECT_TRUE(same != driver.end() && same->second == content) << name << ": " << file;
    }
}

Json SameStepsTest::tapRequest(const QString& identifier) const
{
    return { { "do", "tap" }, { "row", identifier.toStdString() } };
}
