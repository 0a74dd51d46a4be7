// Switches the process's LC_NUMERIC to a locale that writes "1,5", for the life of the object, to
// show that prices and formats keep their ".". Under CTest the locale is compiled into the build
// tree beforehand and found through LOCPATH; there its absence is a failure, elsewhere a skip.
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

namespace qvox::testing {

class DecimalCommaLocale {
  public:
    DecimalCommaLocale() : saved_(std::setlocale(LC_NUMERIC, nullptr)) {
        active_ = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    }
    ~DecimalCommaLocale() { std::setlocale(LC_NUMERIC, saved_.c_str()); }
    DecimalCommaLocale(const DecimalCommaLocale&) = delete;
    DecimalCommaLocale& operator=(const DecimalCommaLocale&) = delete;

    bool active() const { return active_; }
    static bool required() { return std::getenv("LOCPATH") != nullptr; }

  private:
    std::string saved_;
    bool active_ = false;
};

}  // namespace qvox::testing

// Ends the test unless the decimal-comma locale is in force.
#define QVOX_EXPECT_DECIMAL_COMMA(locale)                                     \
    do {                                                                      \
        if (!(locale).active()) {                                             \
            if (::qvox::testing::DecimalCommaLocale::required()) {            \
                FAIL() << "de_DE.UTF-8 is missing from LOCPATH";              \
            }                                                                 \
            GTEST_SKIP() << "no locale with a decimal comma on this machine"; \
        }                                                                     \
    } while (false)
