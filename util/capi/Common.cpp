// c/common.h: What every area shares: the interface's version and the text of a result code.
#include "capi/c/common.h"

#include "capi/detail/Boundary.h"

using namespace tav::capi;

extern "C" {

int32_t tav_c_interface_version(void) { return 1; }

}  // extern "C"
