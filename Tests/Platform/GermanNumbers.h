#pragma once

#include "Support/TestPhone.h"

#include <clocale>
#include <cstdlib>
#include <string>

/// Numbers are written as in Germany, with a decimal comma, for as long as it lives.
class GermanNumbers {
public:
    GermanNumbers()
    {
        if (!std::setlocale(LC_NUMERIC, name)) {
            setenv("LOCPATH", folderOfLocale().c_str(), 1);
            std::setlocale(LC_NUMERIC, name);
        }
    }
    ~GermanNumbers()
    {
        std::setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }
    GermanNumbers(const GermanNumbers&) = delete;
    GermanNumbers& operator=(const GermanNumbers&) = delete;

    /// False where the system has no such locale and cannot make one.
    bool isSet() const { return *std::localeconv()->decimal_point == ','; }

private:
    static constexpr const char* name = "de_DE.UTF-8";

    /// Where the locale is, made once for the process; an empty folder where it cannot be made.
    static std::string folderOfLocale()
    {
        static const TemporaryDirectory folder;
        static const int made = std::system(
            ("localedef -i de_DE -f UTF-8 " + (folder.path() / name).string() + " >/dev/null 2>&1").c_str());
        return made == 0 ? folder.path().string() : std::string();
    }
};
