// No confinement: systems without a supported kernel feature, and builds that turn it off.

#include "platform/System.h"

System::Confinement System::confine(const Reach& /*reach*/) { return {}; }
