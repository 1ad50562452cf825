/* The C interface's header on its own as strict C99, with no Windows header before it. */
#include "capi/TavUtilC.h"

int header_check_cxx(void);

int main(void) { return tav_c_interface_version() == 1 && header_check_cxx() == 1 ? 0 : 1; }
