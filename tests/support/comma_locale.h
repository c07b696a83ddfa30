#pragma once

#include "tests/support/scratch_folder.h"

#include <clocale>
#include <cstdlib>
#include <string>

/// While it lives, the process has a locale with a decimal comma. When no such locale is installed, makes one from the sources in Debian's
/// package `locales`, if that is installed.
class CommaLocale {
public:
    static constexpr const char* reason = "there is no locale with a decimal comma, nor its sources";

    CommaLocale() { is_set_ = set_installed() || set_made(); }
    ~CommaLocale() { std::setlocale(LC_ALL, "C"); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    bool is_set() const { return is_set_; }

private:
    static bool set_installed() {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "German"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                return true;
            }
        }
        return false;
    }
    bool set_made() const {
#if defined(__linux__)
        const std::string make =
            "localedef -i de_DE -f UTF-8 '" + folder_.path("de_DE.UTF-8") + "' >/dev/null 2>&1";
        if (std::system(make.c_str()) != 0 || ::setenv("LOCPATH", folder_.path().c_str(), 1) != 0) {
            return false;
        }
        return set_installed();
#else
        return false;
#endif
    }

    ScratchFolder folder_;
    bool is_set_ = false;
};
