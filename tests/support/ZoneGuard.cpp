#include "support/ZoneGuard.h"

#include <time.h>

ZoneGuard::ZoneGuard(const std::string& zone) {
  variable.emplace(Environment{{.name = "TZ", .value = zone}});
  tzset();
}

ZoneGuard::~ZoneGuard() {
  variable.reset();
  tzset();
}
