#pragma once

#include <locale.h>  // NOLINT(modernize-deprecated-headers): POSIX declares uselocale there

namespace libquilp {

/// While an object of this class exists, the calling thread's C functions classify characters as in
/// the "C" locale, even if the host has set another one.
class CLocale {
 public:
  CLocale() : own_(newlocale(LC_ALL_MASK, "C", nullptr)), hosts_(uselocale(own_)) {}
  ~CLocale() {
    uselocale(hosts_);
    if (own_ != nullptr) {
      freelocale(own_);
    }
  }
  CLocale(const CLocale&) = delete;
  CLocale& operator=(const CLocale&) = delete;

 private:
  locale_t own_;
  locale_t hosts_;
};

}  // namespace libquilp
