// Verbs of the registry area: read a value or list subkeys through CRegistry's read-only open (native view,
// then the 32-bit view), and write a string value through CRegistry.
#include "Cli.h"

#include "Json.h"

#include <TavUtil.h>

#include <cwchar>

namespace {

struct Root {
    const wchar_t* shortName;
    const wchar_t* longName;
    HKEY key;
};

const Root kRoots[] = {
    {L"HKLM", L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {L"HKCU", L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {L"HKCR", L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
    {L"HKU", L"HKEY_USERS", HKEY_USERS},
};

struct KeyPath {
    HKEY root;
    std::wstring path;  // below the root; may be empty
};

// "HKLM\SOFTWARE\x" (or the long root name) into root and path.
KeyPath ParseKey(const std::wstring& text) {
    std::wstring head = text.substr(0, text.find(L'\\'));
    std::wstring rest = head.size() < text.size() ? text.substr(head.size() + 1) : std::wstring();
    for (const Root& root : kRoots)
        if (_wcsicmp(head.c_str(), root.shortName) == 0 || _wcsicmp(head.c_str(), root.longName) == 0)
            return {root.key, rest};
    throw cli::UsageError("KEY must start with HKLM\\, HKCU\\, HKCR\\ or HKU\\, not '" + cli::Narrow(text) + "'");
}

std::wstring StatusText(long status) {
    return cli::ResultText(TAV_RESULT_WIN32, static_cast<int32_t>(status)) + L" (Windows error " +
           std::to_wstring(status) + L")";
}

int Failure(const std::wstring& what, long status) { return cli::Fail(what + L": " + StatusText(status)); }

std::wstring TypeName(unsigned long type) {
    switch (type) {
    case REG_NONE: return L"REG_NONE";
    case REG_SZ: return L"REG_SZ";
    case REG_EXPAND_SZ: return L"REG_EXPAND_SZ";
    case REG_BINARY: return L"REG_BINARY";
    case REG_DWORD: return L"REG_DWORD";
    case REG_DWORD_BIG_ENDIAN: return L"REG_DWORD_BIG_ENDIAN";
    case REG_LINK: return L"REG_LINK";
    case REG_MULTI_SZ: return L"REG_MULTI_SZ";
    case REG_QWORD: return L"REG_QWORD";
    default: return L"type " + std::to_wstring(type);
    }
}

std::wstring HexBytes(const std::vector<unsigned char>& data) {
    std::wstring text;
    wchar_t piece[4];
    for (unsigned char byte : data) {
        swprintf(piece, 4, L"%02x", byte);
        text += (text.empty() ? L"" : L" ") + std::wstring(piece);
    }
    return text;
}

int ReadValue(CRegistry& key, const std::wstring& keyText, const std::wstring& name, bool json) {
    const std::wstring shownName = name.empty() ? L"(default)" : name;
    unsigned long type = REG_NONE, size = 0;
    long status = key.QueryValueEx(name.c_str(), &type, nullptr, &size);
    if (status != ERROR_SUCCESS)
        return Failure(L"cannot read value " + shownName + L" of " + keyText, status);
    cli::Json record = {
        {"key", cli::Narrow(keyText)}, {"value", cli::Narrow(name)}, {"type", cli::Narrow(TypeName(type))}};
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        CStdStr<wchar_t> text;
        if (key.ReadStringValue(name.c_str(), text) != 0)
            return Failure(L"cannot read value " + shownName + L" of " + keyText, ERROR_INVALID_DATA);
        record["data"] = cli::Narrow(text);
        json ? cli::OutJson(record) : cli::OutLine(text);
        return cli::kDone;
    }
    std::vector<unsigned char> data(size);
    status = key.QueryValueEx(name.c_str(), &type, data.data(), &size);
    if (status != ERROR_SUCCESS)
        return Failure(L"cannot read value " + shownName + L" of " + keyText, status);
    data.resize(size);
    record["bytes"] = data;
    if (type == REG_DWORD && size == 4)
        record["data"] = *reinterpret_cast<const DWORD*>(data.data());
    if (json) {
        cli::OutJson(record);
        return cli::kDone;
    }
    std::wstring line = TypeName(type) + L", " + std::to_wstring(size) + L" bytes: " + HexBytes(data);
    if (type == REG_DWORD && size == 4)
        line += L" (" + std::to_wstring(*reinterpret_cast<const DWORD*>(data.data())) + L")";
    cli::OutLine(line);
    return cli::kDone;
}

// Opens the key named on the command line (HKLM\..., HKCU\..., ...).
long OpenNamedKey(CRegistry& reg, const std::wstring& keyText, bool readOnly) {
    KeyPath key = ParseKey(keyText);
    return reg.OpenKey(key.root, key.path.c_str(), readOnly);
}

int RunRead(const cli::Args& args, bool json) {
    cli::RequireCount(args, 1, 2);
    CRegistry reg;
    long status = OpenNamedKey(reg, args[0], true);
    if (status != ERROR_SUCCESS)
        return Failure(L"cannot open key " + args[0], status);
    return ReadValue(reg, args[0], args.size() > 1 ? args[1] : std::wstring(), json);
}

int RunList(const cli::Args& args, bool json) {
    cli::RequireCount(args, 1, 1);
    CRegistry reg;
    long status = OpenNamedKey(reg, args[0], true);
    if (status != ERROR_SUCCESS)
        return Failure(L"cannot open key " + args[0], status);
    cli::Json names = cli::Json::array();
    for (const wchar_t* name = reg.GetFirstSubkey(); name != nullptr; name = reg.GetNextSubkey())
        json ? names.push_back(cli::Narrow(name)) : cli::OutLine(name);
    if (json)
        cli::OutJson({{"key", cli::Narrow(args[0])}, {"subkeys", names}});
    return cli::kDone;
}

int RunWrite(const cli::Args& args, bool json) {
    if (json)
        throw cli::UsageError("--json is for reg read and reg list");
    cli::RequireCount(args, 3, 3);
    CRegistry reg;
    long status = OpenNamedKey(reg, args[0], false);
    if (status != ERROR_SUCCESS)
        return Failure(L"cannot open or create key " + args[0], status);
    status = reg.WriteStringValue(args[1].c_str(), CStdStr<wchar_t>(args[2]));
    if (status != ERROR_SUCCESS)
        return Failure(L"cannot write value " + args[1] + L" of " + args[0], status);
    return cli::kDone;
}

int RunReg(const cli::Call& call) {
    const cli::Args& args = call.args;
    if (args.empty())
        throw cli::UsageError("missing sub-command (read, list or write)");
    const cli::Args rest(args.begin() + 1, args.end());
    const bool json = call.Has(L"--json");
    if (args[0] == L"read")
        return RunRead(rest, json);
    if (args[0] == L"list")
        return RunList(rest, json);
    if (args[0] == L"write")
        return RunWrite(rest, json);
    std::wstring closest = cli::Closest(args[0], {L"read", L"list", L"write"});
    throw cli::UsageError("unknown sub-command '" + cli::Narrow(args[0]) + "'" +
                          (closest.empty() ? "" : " (did you mean '" + cli::Narrow(closest) + "'?)"));
}

cli::VerbRegistration reg{{L"reg", L"reg read [--json] KEY [VALUE] | list [--json] KEY | write KEY VALUE TEXT",
                           L"read a value, list subkeys, write a string", &RunReg, L"--json",
                           L"KEY starts with HKLM\\, HKCU\\, HKCR\\ or HKU\\. Reads look in the native view, then\n"
                           L"in the 32-bit view; a value other than a string prints as its bytes.\n\nexamples:\n"
                           L"  tavutil reg read 'HKCU\\Software\\TavUtil Demo' Greeting\n"
                           L"  tavutil reg list --json 'HKLM\\Software\\Microsoft\\Windows NT'\n"
                           L"  tavutil reg write 'HKCU\\Software\\TavUtil Demo' Greeting Hello",
                           L"the key or value is not there, or the system refused to open or write it"}};

}  // namespace
