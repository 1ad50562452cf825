/**
 * @file TavUtilC.h
 * @brief TavUtil's C interface: every capability of TavUtil.dll as plain C functions, for hosts built with
 * any compiler (Microsoft's included) and for any language that can call C (C#, Python, Rust, Delphi,
 * scripts).
 *
 * The functions are exported from TavUtil.dll under these plain names, beside the C++ interface;
 * TavUtil.lib is their import library for Microsoft's linker, libTavUtil.dll.a for MinGW's. This header
 * includes every area header; a host may include only the areas it uses instead. Each function is named
 * `tav_<area>_<verb>` after the header that declares it (the keystroke header's typing calls are
 * `tav_send_*`): `c/common.h` (the conventions every function follows, the result codes, the handles and
 * records, tav_result_text()), `c/strings.h`, `c/os.h`, `c/log.h`, `c/keys.h`, `c/recorder.h`, `c/clipboard.h`,
 * `c/windows.h`, `c/foreground.h`, `c/waits.h`, `c/sounds.h`, `c/pickers.h`, `c/launch.h`,
 * `c/processes.h`, `c/registry.h`, `c/settings.h`, `c/paths.h`, `c/versions.h`, `c/textfile.h`,
 * `c/software.h`, `c/com.h`, `c/accounts.h` and `c/support.h`.
 */
#ifndef TAVUTIL_C_H
#define TAVUTIL_C_H

#include "c/common.h"

#include "c/accounts.h"
#include "c/clipboard.h"
#include "c/com.h"
#include "c/foreground.h"
#include "c/keys.h"
#include "c/launch.h"
#include "c/log.h"
#include "c/os.h"
#include "c/paths.h"
#include "c/pickers.h"
#include "c/processes.h"
#include "c/recorder.h"
#include "c/registry.h"
#include "c/settings.h"
#include "c/software.h"
#include "c/sounds.h"
#include "c/strings.h"
#include "c/support.h"
#include "c/textfile.h"
#include "c/versions.h"
#include "c/waits.h"
#include "c/windows.h"

#endif /* TAVUTIL_C_H */
