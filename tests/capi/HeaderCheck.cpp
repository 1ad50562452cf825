// The C interface's header on its own in C++, with no Windows header before it: its names keep C linkage.
#include "capi/TavUtilC.h"

extern "C" int header_check_cxx(void) { return tav_c_interface_version(); }
