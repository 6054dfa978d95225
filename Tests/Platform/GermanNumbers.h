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
            const std::string made = (_folder.path() / name).string();
            if (std::system(("localedef -i de_DE -f UTF-8 " + made + " >/dev/null 2>&1").c_str()) == 0) {
                setenv("LOCPATH", _folder.path().c_str(), 1);
                std::setlocale(LC_NUMERIC, name);
            }
        }
        _isSet = *std::localeconv()->decimal_point == ',';
    }
    ~GermanNumbers()
    {
        std::setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }
    GermanNumbers(const GermanNumbers&) = delete;
    GermanNumbers& operator=(const GermanNumbers&) = delete;

    /// False where the system has no such locale and cannot make one.
    bool isSet() const { return _isSet; }

private:
    static constexpr const char* name = "de_DE.UTF-8";

    TemporaryDirectory _folder;
    bool _isSet = false;
};
