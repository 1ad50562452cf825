// The smallest host: the umbrella header, a few calls, a line of output.
#include <TavUtil/TavUtil.h>

#include <cstdio>

int main() {
    OSInfo os;
    CStdStr<wchar_t> path = L"C:\\Program Files";
    EnsureTrailingBackslash(path);
    auto pieces = StringCut(L"one two three", 7);
    bool ok = os.IsUnderlying64Bit() && path == L"C:\\Program Files\\" && pieces.size() == 2;
    std::printf("consumer: TavUtil %s (Windows classification %d)\n", ok ? "works" : "FAILED",
                static_cast<int>(os.version()));
    return ok ? 0 : 1;
}
