#include "Desktop/DesktopApps.h"

#include "Foundation/NSKeyedArchiver.h"
#include "Phone/Phone.h"
#include "Pictures/ModuleImages.h"
#include "Storage/StoredPropertyLists.h"

#include <chrono>
#include <map>
#include <sstream>

namespace {

using Color = std::array<std::uint8_t, 4>;

const std::map<std::string, Color> colors { { "red", { 255, 0, 0, 255 } }, { "lime", { 0, 255, 0, 255 } },
    { "blue", { 0, 0, 255, 255 } }, { "black", { 0, 0, 0, 255 } }, { "neutral", { 0x9A, 0xA0, 0xAD, 255 } },
    { "clear", { 0, 0, 0, 0 } } };

std::string nameOf(const Color& color)
{
    for (const auto& [name, known] : colors) {
        if (known == color)
            return name;
    }
    return "another colour";
}

/// What a theme's index says of a directory.
std::string sectionOf(const std::string& directory)
{
    if (directory == "scalable")
        return "[scalable]\nSize=128\nMinSize=96\nMaxSize=512\nType=Scalable\n";
    const auto at = directory.find('@');
    const std::string scale = at == std::string::npos ? "" : "Scale=" + directory.substr(at + 1, 1) + "\n";
    return "[" + directory + "]\nSize=" + directory.substr(0, at) + "\nType=Fixed\n" + scale;
}

} // namespace

DesktopApps::DesktopApps()
{
    Phone phone;
    phone.propertyLists = std::make_shared<StoredPropertyLists>();
    phone.images = std::make_shared<ModuleImages>();
    phone.appIcons = std::make_shared<DesktopIcons>(
        std::vector { folder.path("own"), folder.path("system") }, [this] { return theme; });
    phone.screenScale = 2;
    Phone::setCurrent(std::move(phone));
}

DesktopApps::~DesktopApps()
{
    Phone::setCurrent({});
}

void DesktopApps::write(const std::string& file, const std::string& content)
{
    std::filesystem::create_directories(std::filesystem::path(folder.path(file)).parent_path());
    folder.write(file, content);
    // Files that are written one right after the other are told apart.
    std::filesystem::last_write_time(folder.path(file), _time += std::chrono::seconds(1));
}

void DesktopApps::install(const std::string& icon, const std::string& dataFolder)
{
    write(dataFolder + "/applications/" + app + ".desktop",
        "[Desktop Entry]\nType=Application\nName=App\nIcon=" + icon + "\n");
}

void DesktopApps::writePicture(const std::string& file, const std::string& color, int width, int height)
{
    Bitmap bitmap { width, height, {} };
    for (int i = 0; i < width * height; ++i)
        bitmap.rgba.insert(bitmap.rgba.end(), colors.at(color).begin(), colors.at(color).end());
    const Bytes png = ModuleImages().encodePng(bitmap).value();
    write(file, textOf(png));
}

void DesktopApps::writeDrawing(const std::string& file, const std::string& color)
{
    write(file,
        "<svg xmlns='http://www.w3.org/2000/svg' width='64' height='64'><rect width='64' height='64' fill='" + color
            + "'/></svg>");
}

void DesktopApps::writeTheme(
    const std::string& theme, const std::string& directories, const std::string& more, const std::string& dataFolder)
{
    std::string sections;
    std::istringstream stream(directories);
    for (std::string directory; std::getline(stream, directory, ',');)
        sections += sectionOf(directory);
    write(dataFolder + "/icons/" + theme + "/index.theme",
        "[Icon Theme]\nName=x\nDirectories=" + directories + "\n" + more + "\n" + sections);
    touch(dataFolder + "/icons/" + theme);
}

void DesktopApps::touch(const std::string& name)
{
    last_write_time(std::filesystem::path(folder.path(name)), _time += std::chrono::seconds(1));
}

Value DesktopApps::ask(const Value& app, const char* message)
{
    return screen.ask("com.vexil.tandem", message, Dictionary { { "TDServiceMessageData", app } });
}

std::shared_ptr<UIImage> DesktopApps::iconOf(const std::string& app)
{
    const Value reply = ask(app);
    const auto* archive = reply["TDServiceMessageData"].data();
    return archive ? NSKeyedUnarchiver::unarchiveObjectWithData(*archive).as<UIImage>() : nullptr;
}

std::string DesktopApps::shown()
{
    const auto icon = iconOf(app);
    const auto bitmap = icon ? icon->bitmap() : nullptr;
    if (!bitmap)
        return "nothing";
    const auto middle = (static_cast<std::size_t>(bitmap->height) / 2 * bitmap->width + bitmap->width / 2) * 4;
    Color color;
    std::copy_n(bitmap->rgba.begin() + static_cast<std::ptrdiff_t>(middle), color.size(), color.begin());
    return nameOf(color);
}
