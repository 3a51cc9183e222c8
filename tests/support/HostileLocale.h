#pragma once

#include <clocale>
#include <locale>
#include <string>

namespace Kestrel {

/// While it lives, both the C and the C++ library write and read numbers with a decimal comma and dots
/// between the thousands: the C library if the system has a locale for it, the C++ library always.
class HostileLocale {
 public:
  HostileLocale() : m_oldCpp(std::locale::global(std::locale(std::locale::classic(), new Punctuation))) {
    m_oldC = std::setlocale(LC_ALL, nullptr);
    for (auto const* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE", "nl_NL.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) break;
    }
  }
  HostileLocale(HostileLocale const&) = delete;
  HostileLocale& operator=(HostileLocale const&) = delete;
  ~HostileLocale() {
    std::locale::global(m_oldCpp);
    static_cast<void>(std::setlocale(LC_ALL, m_oldC.c_str()));
  }

 private:
  struct Punctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale m_oldCpp;
  std::string m_oldC;
};

}  // namespace Kestrel
