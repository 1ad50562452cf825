#include "Json.h"

namespace cli {

void OutJson(const Json& object) {
    // Text that is not valid UTF-16 (a lone surrogate) reaches here already replaced by U+FFFD.
    OutLine(Widen(object.dump(2, ' ', false, Json::error_handler_t::replace)));
}

}  // namespace cli
