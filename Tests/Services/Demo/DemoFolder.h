#pragma once

#include "Demo/DemoPhone.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

/// A test with a folder of its own, in which it writes the files of a demo phone.
class DemoFolder : public testing::Test {
public:
    DemoFolder();
    ~DemoFolder() override;

protected:
    std::string path(const std::string& name) const { return (_folder / name).string(); }
    void write(const std::string& name, const std::string& content) const;
    /// The phone that the text describes. A test that expects one fails without it.
    std::unique_ptr<DemoPhone> open(const std::string& text) const;
    /// Why the text describes no phone, without the name of the file. A test that expects a fault fails without one.
    std::string faultOf(const std::string& text) const;

private:
    std::filesystem::path _folder;
};
