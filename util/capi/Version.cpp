// tav_version: the version of the TavUtil.dll a host has loaded, to compare with the TAVUTIL_VERSION of the
// headers it was built against (TavUtil/TavUtilVersion.h, made by the build from the project's version).
#include <TavUtil/TavUtilVersion.h>

#include <cstdint>

// Declared here and not through capi/TavUtilC.h: that header still names its version record tav_version, and C
// cannot give a type and a function one name. Once the record has its new name, the header declares this
// function and this file includes it instead.
extern "C" int32_t tav_version(void);

extern "C" int32_t tav_version(void) { return TAVUTIL_VERSION; }
