// c/common.h: the version of the loaded DLL, from the project's version (TavUtil/TavUtilVersion.h).
#include "capi/c/common.h"

extern "C" int32_t tav_version(void) { return TAVUTIL_VERSION; }
