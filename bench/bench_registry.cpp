// CRegistry::ReadStringValue against a raw baseline making the same two queries on an already open key.
#include "Bench.h"

#include <TavUtil.h>

#include <windows.h>

#include <string>
#include <vector>

int main() {
    const std::wstring path = L"Software\\TavUtilBench-" + std::to_wstring(GetCurrentProcessId());
    CRegistry reg(HKEY_CURRENT_USER, path.c_str(), false);
    reg.WriteStringValue(L"Text", CStdStr<wchar_t>(L"C:\\Program Files\\Velmorax\\Trimdial\\Trimdial.exe"));
    reg.CloseKey();  // the wrapper's own close, which reports a status

    CRegistry reader(HKEY_CURRENT_USER, path.c_str(), true);
    tav::UniqueKey raw;
    RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, raw.put());
    volatile size_t sink = 0;
    bench::Options options;
    options.callsPerBatch = 100;
    options.batches = 10;
    bench::Compare(
        "CRegistry::ReadStringValue vs two RegQueryValueExW",
        [&] {
            CStdStr<wchar_t> text;
            reader.ReadStringValue(L"Text", text);
            sink = sink + text.size();
        },
        [&] {
            DWORD type = 0, size = 0;
            RegQueryValueExW(raw.get(), L"Text", nullptr, &type, nullptr, &size);
            std::vector<unsigned char> buffer(2 * size);
            DWORD capacity = static_cast<DWORD>(buffer.size());
            RegQueryValueExW(raw.get(), L"Text", nullptr, &type, buffer.data(), &capacity);
            std::wstring text(reinterpret_cast<const wchar_t*>(buffer.data()), capacity / sizeof(wchar_t));
            sink = sink + text.size();
        },
        options);
    raw.reset();
    reader.CloseKey();  // the wrapper's own close, which reports a status
    RegDeleteKeyW(HKEY_CURRENT_USER, path.c_str());
    return bench::Finish();
}
