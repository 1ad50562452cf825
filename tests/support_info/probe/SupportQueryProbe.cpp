// support_query_probe.exe ADDRESS: prints the query CSWandDeviceInfo builds for ADDRESS (UTF-8, one line).
// This executable has no version resource, so the query has no software version.
#include <TavUtil.h>

#include <cstdio>
#include <string>

int wmain(int argc, wchar_t** argv) {
    if (argc != 2)
        return 2;
    CSWandDeviceInfo info;
    CStdStr<wchar_t> query = info.search(argv[1]);
    std::string bytes(static_cast<size_t>(query.size()) * 3 + 1, '\0');
    int n = WideCharToMultiByte(CP_UTF8, 0, query.c_str(), static_cast<int>(query.size()), bytes.data(),
                                static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<size_t>(n > 0 ? n : 0));
    std::printf("[%s]\n", bytes.c_str());
    return 0;
}
