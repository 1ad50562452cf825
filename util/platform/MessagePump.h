// The message pump of the calling thread, standing in for the class library's thread object: the waits
// that keep a user-interface thread responsive hand each waiting message to it.
#pragma once

#include "Export.h"

#include <windows.h>

namespace tav {
// Retrieves, translates and dispatches one message of the calling thread, waiting for one if none is
// queued. FALSE when the message was WM_QUIT (it is consumed, as the class library's pump does).
TAVUTIL_API BOOL PumpMessage();
}  // namespace tav
