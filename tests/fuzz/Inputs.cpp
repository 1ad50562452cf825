#include "Inputs.h"

#include "TestSupport.h"
#include "VersionBlock.h"

#include <TavUtil.h>

#include <cwctype>

#include <windows.h>

#include <vector>

namespace fuzz {

Text PathText(Rng& rng) {
    const std::vector<Text> pieces = {L"C:",
                                      L"D:",
                                      L"\\",
                                      L"/",
                                      L"\\\\",
                                      L"dir",
                                      L"sub",
                                      L".",
                                      L"..",
                                      L".txt",
                                      L"file",
                                      L"a.b.c",
                                      L" ",
                                      L":",
                                      L"x",
                                      L"\x00E9",
                                      L"*",
                                      L"?",
                                      Text(250, L'n'),
                                      Text(256, L'e'),
                                      Text(120, L'd') + L"\\"};
    Text path;
    for (uint32_t n = rng.Below(9); n > 0; --n)
        path += rng.Pick(pieces);
    return path;
}

DamagedVersionResource::DamagedVersionResource()
    : original_(tavtest::ReadFileBytes(tavtest::BinDir() + L"\\verfix_translation.dll")) {}

std::string DamagedVersionResource::Copy(Rng& rng) const {
    tavtest::VersionBlockBytes copy = original_;
    const uint32_t length = static_cast<uint32_t>(original_.length());
    for (uint32_t n = rng.Below(6); n > 0; --n) {
        const size_t offset = rng.Below(length) & ~size_t{1};
        switch (rng.Below(4)) {
        case 0: copy.FlipBit(offset, rng.Below(8)); break;      // a flipped bit
        case 1: copy.Put16(offset, rng.Below(0x10000)); break;  // any 16-bit value
        case 2:                                                 // a length that lies
            copy.Put16(offset, std::vector<unsigned>{0, 1, 2, 6, 0xFFFF, 0x8000, length + 2}[rng.Below(7)]);
            break;
        default: copy.Put16(0, rng.Below(length + 1)); break;  // truncated
        }
    }
    return copy.bytes();
}

DeletedAfterwards::~DeletedAfterwards() { DeleteFileW(path.c_str()); }

namespace {

// "aux", "Con  ", "lpt1": names that open a device in any folder (blanks at the end do not count).
bool NamesADevice(const Text& name) {
    Text base = name.substr(0, name.find_last_not_of(L' ') + 1);
    for (wchar_t& ch : base)
        ch = static_cast<wchar_t>(std::towupper(ch));
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"})
        if (base == device)
            return true;
    return base.size() == 4 && (base.compare(0, 3, L"COM") == 0 || base.compare(0, 3, L"LPT") == 0) &&
           base[3] >= L'0' && base[3] <= L'9';
}

}  // namespace

std::wstring FileNameInside(const std::wstring& folder, const Text& text) {
    Text name = text;
    for (wchar_t& ch : name)
        if (ch == L'\\' || ch == L'/' || ch == L':' || ch == L'.')
            ch = L'_';
    if (NamesADevice(name))
        name.insert(0, 1, L'_');
    return folder + L"\\" + (name.empty() || name.size() > 100 ? L"plain.txt" : name);
}

Text VersionText(Rng& rng) {
    const std::vector<Text> numbers = {L"0",         L"1",          L"65535", L"65536", L"70000",     L"-1",
                                       L"+5",        L" 7",         L"\t8",   L"x",     L"",          L"007",
                                       L"999999999", L"2147483647", L"1x2",   L"-",     L"4294967296"};
    Text text;
    for (uint32_t n = rng.Below(7); n > 0; --n) {
        text += rng.Pick(numbers);
        text += Text(rng.OneIn(6) ? rng.Below(3) : 1, L'.');
    }
    return text;
}

RawValue RandomRawValue(Rng& rng) {
    const DWORD types[] = {REG_NONE, REG_SZ,       REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_DWORD_BIG_ENDIAN,
                           REG_LINK, REG_MULTI_SZ, REG_QWORD,     0x12345678, REG_SZ,    REG_SZ,
                           REG_DWORD};
    RawValue value;
    value.type = types[rng.Below(sizeof types / sizeof *types)];
    // 92 bytes: a stored font record.
    size_t length =
        rng.OneIn(3) ? std::vector<size_t>{0, 1, 2, 3, 4, 7, 8, 16, 20, 92, 4096}[rng.Below(11)] : rng.Below(80);
    if (rng.OneIn(500))
        length = 70000 + rng.Below(3);
    value.data.resize(length);
    for (BYTE& byte : value.data)
        byte = static_cast<BYTE>(rng.OneIn(5) ? 0 : rng.OneIn(2) ? 'a' + rng.Below(26) : rng.Below(256));
    return value;
}

SupportAddresses MakeSupportAddresses() {
    SupportAddresses addresses;
    addresses.hosts = {CSWandDeviceInfo::s_striPlumeURL1, CSWandDeviceInfo::s_striPlumeURL2,
                       CSWandDeviceInfo::s_striPlumeURL3, CSWandDeviceInfo::s_strVelmURL};
    for (const Text& host : addresses.hosts)
        addresses.seeds.push_back(L"http://" + host + L"/support?L=fr&B=7");
    addresses.seeds.push_back(L"http://example.com/?URL=x");
    addresses.seeds.push_back(L"HTTP://" + addresses.hosts[0] + L"/a?URL=x&B=");
    return addresses;
}

Text SupportAddresses::Generate(Rng& rng) const {
    const std::vector<Text> pieces = {L"http://", L"https://", L"/", L"?",  L"&",    L"L=",     L"B=",    L"URL=",
                                      L"fr",      L"7",        L"=", L"&&", L"www.", L"\x00C4", L"\xD800"};
    Text address;
    for (uint32_t n = rng.Below(8); n > 0; --n) {
        Text piece = rng.OneIn(4) ? rng.Pick(hosts) : rng.Pick(pieces);
        if (rng.OneIn(5))
            for (wchar_t& ch : piece)
                ch = static_cast<wchar_t>(towupper(ch));
        address += piece;
    }
    return address;
}

std::shared_ptr<HKEY__> ScratchKey(const std::wstring& name, std::wstring* path) {
    const std::wstring keyPath = L"Software\\TavUtilFuzz\\" + name + std::to_wstring(GetCurrentProcessId());
    HKEY raw = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &raw, nullptr) !=
        ERROR_SUCCESS)
        return {};
    *path = keyPath;
    return std::shared_ptr<HKEY__>(raw, [keyPath](HKEY key) {
        RegCloseKey(key);
        RegDeleteTreeW(HKEY_CURRENT_USER, keyPath.c_str());
        RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\TavUtilFuzz");
    });
}

}  // namespace fuzz
