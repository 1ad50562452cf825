// CRegistry and CRegistryClass: every operation against a scratch key of the run's own.
#include "Areas.h"

#include "RawRegistry.h"

#include <TavUtil.h>

#include <windows.h>

namespace soak {

void SoakRegistry(Runner& runner) {
    tavtest::ScratchKey scratch;
    const std::wstring path = scratch.path();
    const std::wstring child = scratch / L"child";
    regtest::RawCreate(HKEY_CURRENT_USER, child);
    regtest::RawCreate(HKEY_CURRENT_USER, scratch / L"second");
    const bool writable = false, readOnly = true;

    runner.Check("CRegistry OpenKey writable + CloseKey", [&] {
        CRegistry key;
        key.OpenKey(HKEY_CURRENT_USER, path.c_str(), writable);
        key.CloseKey();
    });
    runner.Check("CRegistry OpenKey read-only + CloseKey", [&] {
        CRegistry key;
        key.OpenKey(HKEY_CURRENT_USER, path.c_str(), readOnly);
        key.CloseKey();
    });
    runner.Check("CRegistry OpenKey missing (both views)", [&] {
        CRegistry key;
        key.OpenKey(HKEY_CURRENT_USER, (path + L"\\missing").c_str(), readOnly);
    });
    runner.Check("CRegistry opening constructor + destructor",
                 [&] { CRegistry key(HKEY_CURRENT_USER, path.c_str(), readOnly); });

    CRegistry open(HKEY_CURRENT_USER, path.c_str(), writable);
    const CStdStr<wchar_t> text(L"soak value");
    runner.Check("CRegistry WriteStringValue", [&] { open.WriteStringValue(L"text", text); });
    runner.Check("CRegistry ReadStringValue", [&] {
        CStdStr<wchar_t> out;
        open.ReadStringValue(L"text", out);
    });
    runner.Check("CRegistry ReadStringValue missing", [&] {
        CStdStr<wchar_t> out;
        open.ReadStringValue(L"missing", out);
    });
    runner.Check("CRegistry SetValueEx + QueryValueEx", [&] {
        open.SetValueEx(L"raw", REG_SZ, L"raw", 8);
        wchar_t buffer[8];
        unsigned long type = 0, size = sizeof buffer;
        open.QueryValueEx(L"raw", &type, reinterpret_cast<unsigned char*>(buffer), &size);
    });
    runner.Check("CRegistry DeleteValue", [&] {
        open.WriteStringValue(L"gone", text);
        open.DeleteValue(L"gone");
    });
    runner.Check("CRegistry GetFirstSubkey/GetNextSubkey", [&] {
        for (const wchar_t* name = open.GetFirstSubkey(); name; name = open.GetNextSubkey()) {
        }
    });
    runner.Check("CRegistry DeleteKey", [&] {
        regtest::RawCreate(HKEY_CURRENT_USER, scratch / L"leaf");
        open.DeleteKey(L"leaf");
    });
}

void SoakRegistryClass(Runner& runner) {
    tavtest::ScratchKey scratch;
    const CString path(scratch.path().c_str());
    regtest::RawCreate(HKEY_CURRENT_USER, scratch / L"child");
    CRegistryClass settings;
    settings.CreateKey(path);

    LOGFONTW logFont = {};
    logFont.lfHeight = -12;
    wcscpy(logFont.lfFaceName, L"Arial");
    CFont font;
    font.CreateFontIndirect(&logFont);
    CRect rect(1, 2, 3, 4);
    CPoint point(5, 6);
    CSize size(7, 8);
    COleDateTime when(2024, 5, 6, 7, 8, 9);
    settings.WriteString(L"s", L"text");
    settings.WriteDword(L"d", 1);
    settings.WriteInt(L"i", 2);
    settings.WriteFloat(L"f", 1.5);
    settings.WriteDateTime(L"t", when);
    settings.WriteRect(L"r", &rect);
    settings.WritePoint(L"p", &point);
    settings.WriteFont(L"font", &font);

    struct Operation {
        const char* name;
        std::function<void()> call;
    };
    const Operation operations[] = {
        {"SetRootKey + GetRootKey", [&] { settings.SetRootKey(settings.GetRootKey()); }},
        {"CreateKey", [&] { settings.CreateKey(path); }},
        {"SetKey existing", [&] { settings.SetKey(path, 0); }},
        {"SetKey missing",
         [&] {
             CRegistryClass other;
             other.SetKey(path + L"\\missing", 0);
         }},
        {"ClearKey",
         [&] {
             CRegistryClass other = settings;
             other.ClearKey();
         }},
        {"PathIsValid + GetCurrentPath + GetLazyWrite + GetLastStatus",
         [&] { settings.PathIsValid(), settings.GetCurrentPath(), settings.GetLazyWrite(), settings.GetLastStatus(); }},
        {"KeyExists", [&] { settings.KeyExists(path); }},
        {"DeleteKey",
         [&] {
             regtest::RawCreate(HKEY_CURRENT_USER, scratch / L"leaf");
             settings.DeleteKey(path + L"\\leaf");
         }},
        {"DeleteKey missing", [&] { settings.DeleteKey(path + L"\\missing"); }},
        {"DeleteValue",
         [&] {
             settings.WriteDword(L"gone", 1);
             settings.DeleteValue(L"gone");
         }},
        {"ValueExists", [&] { settings.ValueExists(L"s"); }},
        {"GetDataSize", [&] { settings.GetDataSize(L"s"); }},
        {"GetDataType", [&] { settings.GetDataType(L"s"); }},
        {"GetSubKeyCount + GetValueCount", [&] { settings.GetSubKeyCount(), settings.GetValueCount(); }},
        {"GetSubKeyName",
         [&] {
             CString name;
             settings.GetSubKeyName(0, name);
         }},
        {"RenameValue", [&] { settings.RenameValue(L"s", L"renamed"); }},
        {"SetLazyWrite 0 + WriteDword (flushes)",
         [&] {
             settings.SetLazyWrite(0);
             settings.WriteDword(L"flushed", 3);
             settings.SetLazyWrite(1);
         }},
        {"ReadString", [&] { settings.ReadString(L"s", L"default"); }},
        {"ReadString missing", [&] { settings.ReadString(L"missing", L"default"); }},
        {"ReadDword", [&] { settings.ReadDword(L"d", 0); }},
        {"ReadInt + ReadBool + ReadColor",
         [&] { settings.ReadInt(L"i", 0), settings.ReadBool(L"i", 0), settings.ReadColor(L"i", 0); }},
        {"ReadFloat", [&] { settings.ReadFloat(L"f", 0); }},
        {"ReadDateTime", [&] { settings.ReadDateTime(L"t", COleDateTime()); }},
        {"ReadBinary",
         [&] {
             unsigned char bytes[16];
             settings.ReadBinary(L"r", bytes, sizeof bytes);
         }},
        {"ReadRect + ReadPoint + ReadSize",
         [&] {
             CRect r;
             CPoint p;
             CSize s;
             settings.ReadRect(L"r", &r), settings.ReadPoint(L"p", &p), settings.ReadSize(L"p", &s);
         }},
        {"ReadFont into a new font",
         [&] {
             CFont read;
             settings.ReadFont(L"font", &read);
         }},
        {"WriteString", [&] { settings.WriteString(L"s", L"text"); }},
        {"WriteDword", [&] { settings.WriteDword(L"d", 1); }},
        {"WriteInt + WriteBool + WriteColor",
         [&] { settings.WriteInt(L"i", 2), settings.WriteBool(L"b", 1), settings.WriteColor(L"c", 0xFF); }},
        {"WriteFloat", [&] { settings.WriteFloat(L"f", 1.5); }},
        {"WriteDateTime", [&] { settings.WriteDateTime(L"t", when); }},
        {"WriteRect + WritePoint + WriteSize",
         [&] { settings.WriteRect(L"r", &rect), settings.WritePoint(L"p", &point), settings.WriteSize(L"z", &size); }},
        {"WriteFont", [&] { settings.WriteFont(L"font", &font); }},
        {"copy + destructor", [&] { CRegistryClass copy(settings); }},
    };
    for (const Operation& operation : operations)
        runner.Check(std::string("CRegistryClass ") + operation.name, operation.call);
}

}  // namespace soak
