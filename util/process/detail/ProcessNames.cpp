#include "process/detail/ProcessNames.h"

#include <locale>

namespace tav::process::detail {

CStdStr<wchar_t> WantedExecutableName(const CStdStr<wchar_t>& name) {
    // substr throws std::out_of_range when the name is shorter than the suffix (kept on purpose).
    std::wstring suffix = name.substr(name.size() - 4);
    for (wchar_t& c : suffix)
        c = std::tolower(c, std::locale::classic());
    CStdStr<wchar_t> wanted = name;
    if (suffix != L".exe")
        wanted += L".exe";
    return wanted;
}

}  // namespace tav::process::detail
