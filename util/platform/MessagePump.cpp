#include "platform/MessagePump.h"

namespace tav {

BOOL PumpMessage() {
    MSG msg;
    if (GetMessageW(&msg, nullptr, 0, 0) <= 0)
        return FALSE;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
    return TRUE;
}

}  // namespace tav
