#include "DemoFolder.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

constexpr const char* phoneFile = "phone.json";

}

DemoFolder::DemoFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "demo-phone-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary directory");
    _folder = pattern;
}

DemoFolder::~DemoFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(_folder, ignored);
    Phone::setCurrent({});
}

void DemoFolder::write(const std::string& name, const std::string& content) const
{
    std::ofstream(path(name), std::ios::binary) << content;
}

std::unique_ptr<DemoPhone> DemoFolder::open(const std::string& text) const
{
    write(phoneFile, text);
    auto phone = DemoPhone::open(path(phoneFile));
    EXPECT_TRUE(phone) << phone.failure().text;
    return phone ? std::move(*phone) : nullptr;
}

std::string DemoFolder::faultOf(const std::string& text) const
{
    write(phoneFile, text);
    const auto phone = DemoPhone::open(path(phoneFile));
    EXPECT_FALSE(phone);
    const std::string error = phone ? "" : phone.failure().text;
    const std::string name = path(phoneFile) + ": ";
    EXPECT_TRUE(error.starts_with(name)) << error;
    return error.substr(std::min(name.size(), error.size()));
}
