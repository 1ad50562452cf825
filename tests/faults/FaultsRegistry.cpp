// Operations of the registry owner and of the settings store, on a key of the run's own below
// HKEY_CURRENT_USER\Software\TavUtilFaults, laid out afresh (by the test, not the library) before every run.
#include "Faults.h"

#include "capi/TavUtilC.h"

#include <windows.h>

namespace faults {

namespace {

const wchar_t* const kTop = L"Software\\TavUtilFaults";
const wchar_t* const kKey = L"Software\\TavUtilFaults\\Key";

void SetString(HKEY key, const wchar_t* name, const wchar_t* value) {
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                   static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
}

// The fixture: Key with a string, a number and two subkeys.
void LayOut() {
    RegDeleteTreeW(HKEY_CURRENT_USER, kTop);
    HKEY key = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) != 0)
        return;
    SetString(key, L"name", L"value");
    const DWORD number = 7;
    RegSetValueExW(key, L"number", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    for (const wchar_t* sub : {L"sub1", L"sub2"}) {
        HKEY child = nullptr;
        if (RegCreateKeyExW(key, sub, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &child, nullptr) == 0)
            RegCloseKey(child);
    }
    RegCloseKey(key);
}

void Clear() { RegDeleteTreeW(HKEY_CURRENT_USER, kTop); }

// A failed open passes its status on: the answer of the operation is then that status, marked.
const wchar_t* const kOpenFailed = L"(open failed)";

Answer WithKey(int32_t readOnly, const std::function<Answer(tav_registry)>& body) {
    tav_registry key = tav_registry_create();
    if (key == nullptr)
        return {TAV_E_OUT_OF_MEMORY, L""};
    const int32_t opened = tav_registry_open(key, TAV_HKEY_CURRENT_USER, kKey, readOnly);
    Answer answer = opened == ERROR_SUCCESS ? body(key) : Answer{opened, kOpenFailed};
    tav_registry_destroy(key);
    return answer;
}

Operation Registry(const char* name, int32_t readOnly, std::function<Answer(tav_registry)> body,
                   std::vector<Answer> neutral, unsigned allow) {
    Operation op{"registry", name, {}, std::move(neutral), allow, nullptr, LayOut, Clear, false};
    op.run = [readOnly, body] {
        Answer answer = WithKey(readOnly, body);
        // Every open that fails passes the Windows status on unchanged.
        if (answer.text == kOpenFailed && answer.status > 0)
            answer = {1000000, kOpenFailed};
        return answer;
    };
    op.neutral.push_back({1000000, kOpenFailed});
    return op;
}

// A settings store on the fixture key. Selecting the key fails quietly (0) when the key cannot be opened.
Answer WithSettings(const std::function<Answer(tav_settings)>& body) {
    tav_settings settings = tav_settings_create();
    if (settings == nullptr)
        return {TAV_E_OUT_OF_MEMORY, L""};
    Answer answer;
    const int32_t root = tav_settings_set_root(settings, TAV_HKEY_CURRENT_USER);
    const int32_t selected = root > 0 ? tav_settings_set_key(settings, kKey, 0) : root;
    if (selected < 0)
        answer = {selected, L""};
    else if (selected == 0)
        answer = {0, L"(key not selected)"};
    else
        answer = body(settings);
    tav_settings_destroy(settings);
    return answer;
}

Operation Settings(const char* name, std::function<Answer(tav_settings)> body, std::vector<Answer> neutral,
                   unsigned allow = 0) {
    Operation op{"settings", name, {}, std::move(neutral), allow, nullptr, LayOut, Clear, false};
    op.run = [body] { return WithSettings(body); };
    op.neutral.push_back({0, L"(key not selected)"});
    return op;
}

std::wstring Text(const std::function<int32_t(wchar_t*, size_t, size_t*)>& fill, int32_t* status) {
    wchar_t buffer[1024] = {};
    *status = fill(buffer, 1024, nullptr);
    return *status >= 0 ? buffer : L"";
}

// A value written and read back through the store: the answer is write*10 + read (each 1 or 0) and the value
// read. A write that fails leaves nothing to read (0); a read that fails gives the default (10).
Operation RoundTrip(const char* name, std::function<bool(tav_settings)> write,
                    std::function<bool(tav_settings, std::wstring&)> read) {
    return Settings(name,
                    [write, read](tav_settings s) {
                        const bool written = write(s);
                        std::wstring text;
                        const bool got = read(s, text);
                        return Answer{(written ? 10 : 0) + (got ? 1 : 0), got ? text : L""};
                    },
                    {{0, L""}, {10, L""}});
}

std::wstring Numbers(std::initializer_list<int64_t> numbers) {
    std::wstring text;
    for (int64_t number : numbers)
        text += std::to_wstring(number) + L" ";
    return text;
}

}  // namespace

void AddRegistryOperations(std::vector<Operation>& out) {
    // registry: failures are the Windows status unchanged; ReadStringValue turns every failure into 1 and an
    // empty text.
    out.push_back(Registry(
        "open_read", 1,
        [](tav_registry) {
            return Answer{0, L"opened"};
        },
        {}, 0));
    out.push_back(Registry(
        "open_create", 0,
        [](tav_registry) {
            return Answer{0, L"opened"};
        },
        {}, 0));
    out.push_back(Registry(
        "read_string", 1,
        [](tav_registry key) {
            int32_t status = 0;
            std::wstring text =
                Text([key](wchar_t* b, size_t c, size_t* n) { return tav_registry_read_string(key, L"name", b, c, n); },
                     &status);
            return Answer{status, text};
        },
        {{1, L""}}, 0));
    out.push_back(Registry(
        "write_string", 0,
        [](tav_registry key) {
            return Answer{tav_registry_write_string(key, L"written", L"text"), L""};
        },
        {}, kWindowsStatus));
    out.push_back(Registry(
        "query_value", 1,
        [](tav_registry key) {
            uint32_t type = 0, size = sizeof(DWORD);
            DWORD data = 0;
            const int32_t status = tav_registry_query_value(key, L"number", &type, &data, &size);
            return Answer{status, status == 0 ? std::to_wstring(type) + L":" + std::to_wstring(data) : L""};
        },
        {}, kWindowsStatus));
    out.push_back(Registry(
        "set_value", 0,
        [](tav_registry key) {
            const DWORD data = 9;
            return Answer{tav_registry_set_value(key, L"set", REG_DWORD, &data, sizeof data), L""};
        },
        {}, kWindowsStatus));
    out.push_back(Registry(
        "delete_value", 0,
        [](tav_registry key) {
            return Answer{tav_registry_delete_value(key, L"name"), L""};
        },
        {}, kWindowsStatus));
    out.push_back(Registry(
        "delete_key", 0,
        [](tav_registry key) {
            return Answer{tav_registry_delete_key(key, L"sub1"), L""};
        },
        {}, kWindowsStatus));
    // The enumerator: a failed enumeration ends the list where it failed (the names read so far).
    out.push_back(Registry(
        "subkeys", 1,
        [](tav_registry key) {
            wchar_t buffer[256] = {};
            const int32_t count = tav_registry_subkeys(key, buffer, 256, nullptr);
            return Answer{count, count >= 0 ? buffer : L""};
        },
        {{0, L""}, {1, L"sub1"}}, 0));
    out.back().silent = "an enumeration that fails ends with the names read so far";

    // settings: no messages, no exceptions; reads give their default, writes and deletes 0, counts -1.
    auto readString = [](tav_settings s) {
        int32_t status = 0;
        std::wstring text = Text(
            [s](wchar_t* b, size_t c, size_t* n) { return tav_settings_read_string(s, L"name", L"default", b, c, n); },
            &status);
        return Answer{status, text};
    };
    out.push_back(Settings("read_string", readString, {{0, L"default"}}));
    out.push_back(Settings("read_dword",
                           [](tav_settings s) {
                               uint32_t value = 0;
                               const int32_t status = tav_settings_read_dword(s, L"number", 42, &value);
                               return Answer{status, std::to_wstring(value)};
                           },
                           {{0, L"42"}}));
    out.push_back(Settings("write_string",
                           [](tav_settings s) {
                               return Answer{tav_settings_write_string(s, L"written", L"text"), L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("write_dword",
                           [](tav_settings s) {
                               return Answer{tav_settings_write_dword(s, L"wdword", 5), L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("write_font",
                           [](tav_settings s) {
                               tav_logfont font{};
                               font.height = -12;
                               wcscpy(font.face_name, L"Tahoma");
                               return Answer{tav_settings_write_font(s, L"font", &font) != 0, L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("value_exists",
                           [](tav_settings s) {
                               return Answer{tav_settings_value_exists(s, L"name") != 0, L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("data_size",
                           [](tav_settings s) {
                               return Answer{tav_settings_data_size(s, L"name"), L""};
                           },
                           {{-1, L""}}));
    out.push_back(Settings("subkey_count",
                           [](tav_settings s) {
                               return Answer{tav_settings_subkey_count(s), L""};
                           },
                           {{-1, L""}}));
    out.push_back(Settings("value_count",
                           [](tav_settings s) {
                               return Answer{tav_settings_value_count(s), L""};
                           },
                           {{-1, L""}}));
    out.push_back(Settings(
        "subkey_name",
        [](tav_settings s) {
            int32_t status = 0;
            std::wstring text =
                Text([s](wchar_t* b, size_t c, size_t* n) { return tav_settings_subkey_name(s, 1, b, c, n); }, &status);
            return Answer{status, text};
        },
        {{0, L""}}));
    out.push_back(Settings("delete_value",
                           [](tav_settings s) {
                               return Answer{tav_settings_delete_value(s, L"name") != 0, L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("delete_key",
                           [](tav_settings s) {
                               return Answer{tav_settings_delete_key(s, L"sub1") != 0, L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("rename_value",
                           [](tav_settings s) {
                               const int32_t status = tav_settings_rename_value(s, L"name", L"renamed");
                               return Answer{status, L""};
                           },
                           {}));
    out.back().silent = "a rename that fails leaves the values as they were; the call itself answers TAV_OK";
    out.push_back(Settings("key_exists",
                           [](tav_settings s) {
                               return Answer{tav_settings_key_exists(s, kKey, TAV_HKEY_CURRENT_USER) != 0, L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("create_key",
                           [](tav_settings s) {
                               return Answer{tav_settings_create_key(s, L"Software\\TavUtilFaults\\Created") != 0, L""};
                           },
                           {{0, L""}}));

    // Each kind of value, written and read back.
    out.push_back(RoundTrip(
        "int", [](tav_settings s) { return tav_settings_write_int(s, L"i", -5) > 0; },
        [](tav_settings s, std::wstring& t) {
            int32_t v = 0;
            const bool got = tav_settings_read_int(s, L"i", 99, &v) == TAV_OK && v != 99;
            t = Numbers({v});
            return got;
        }));
    out.push_back(RoundTrip(
        "bool", [](tav_settings s) { return tav_settings_write_bool(s, L"b", 1) > 0; },
        [](tav_settings s, std::wstring& t) {
            int32_t v = 0;
            const bool got = tav_settings_read_bool(s, L"b", 0, &v) == TAV_OK && v != 0;
            t = Numbers({v});
            return got;
        }));
    out.push_back(RoundTrip(
        "color", [](tav_settings s) { return tav_settings_write_color(s, L"c", 0x123456) > 0; },
        [](tav_settings s, std::wstring& t) {
            uint32_t v = 0;
            const bool got = tav_settings_read_color(s, L"c", 1, &v) == TAV_OK && v != 1;
            t = Numbers({v});
            return got;
        }));
    out.push_back(RoundTrip(
        "float", [](tav_settings s) { return tav_settings_write_float(s, L"f", 2.5) > 0; },
        [](tav_settings s, std::wstring& t) {
            double v = 0;
            const bool got = tav_settings_read_float(s, L"f", -1.0, &v) == TAV_OK && v != -1.0;
            t = Numbers({static_cast<int64_t>(v * 10)});
            return got;
        }));
    out.push_back(RoundTrip(
        "date_time",
        [](tav_settings s) {
            const tav_date_time when{45000.5, 0, 0};
            return tav_settings_write_date_time(s, L"d", &when) > 0;
        },
        [](tav_settings s, std::wstring& t) {
            const tav_date_time def{1.0, 0, 0};
            tav_date_time v{};
            const bool got = tav_settings_read_date_time(s, L"d", &def, &v) == TAV_OK && v.date != 1.0;
            t = Numbers({static_cast<int64_t>(v.date * 10), v.status});
            return got;
        }));
    out.push_back(RoundTrip(
        "rect",
        [](tav_settings s) {
            const tav_rect r{1, 2, 3, 4};
            return tav_settings_write_rect(s, L"r", &r) > 0;
        },
        [](tav_settings s, std::wstring& t) {
            tav_rect r{};
            const bool got = tav_settings_read_rect(s, L"r", &r) > 0;
            t = Numbers({r.left, r.top, r.right, r.bottom});
            return got;
        }));
    out.push_back(RoundTrip(
        "point",
        [](tav_settings s) {
            const tav_point p{5, 6};
            return tav_settings_write_point(s, L"p", &p) > 0;
        },
        [](tav_settings s, std::wstring& t) {
            tav_point p{};
            const bool got = tav_settings_read_point(s, L"p", &p) > 0;
            t = Numbers({p.x, p.y});
            return got;
        }));
    out.push_back(RoundTrip(
        "size",
        [](tav_settings s) {
            const tav_size z{7, 8};
            return tav_settings_write_size(s, L"z", &z) > 0;
        },
        [](tav_settings s, std::wstring& t) {
            tav_size z{};
            const bool got = tav_settings_read_size(s, L"z", &z) > 0;
            t = Numbers({z.cx, z.cy});
            return got;
        }));
    out.push_back(RoundTrip(
        "font",
        [](tav_settings s) {
            tav_logfont font{};
            font.height = -12;
            wcscpy(font.face_name, L"Tahoma");
            return tav_settings_write_font(s, L"font", &font) > 0;
        },
        [](tav_settings s, std::wstring& t) {
            tav_logfont font{};
            const bool got = tav_settings_read_font(s, L"font", &font) > 0;
            t = Numbers({font.height}) + font.face_name;
            return got;
        }));
    out.push_back(Settings("read_binary",
                           [](tav_settings s) {
                               unsigned char data[4] = {};
                               const int32_t got = tav_settings_read_binary(s, L"number", data, sizeof data);
                               return Answer{got, got > 0 ? Numbers({data[0], data[1], data[2], data[3]}) : L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("data_type",
                           [](tav_settings s) {
                               return Answer{tav_settings_data_type(s, L"name"), L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings(
        "current_path",
        [](tav_settings s) {
            int32_t status = 0;
            std::wstring text =
                Text([s](wchar_t* b, size_t c, size_t* n) { return tav_settings_current_path(s, b, c, n); }, &status);
            return Answer{status, text};
        },
        {}));
    out.push_back(Settings("path_is_valid",
                           [](tav_settings s) {
                               return Answer{tav_settings_path_is_valid(s) != 0, L""};
                           },
                           {{0, L""}}));
    out.push_back(Settings("clear_key", [](tav_settings s) { return Answer{tav_settings_clear_key(s), L""}; }, {}));
    // Lazy writing: the values are flushed when the store lets the key go.
    out.push_back(Settings("lazy_write",
                           [](tav_settings s) {
                               tav_settings_set_lazy_write(s, 1);
                               return Answer{tav_settings_write_dword(s, L"lazy", 3) != 0, L""};
                           },
                           {{0, L""}}));
    // The last status after a failed write is the failing status (a Windows code).
    out.push_back(Settings(
        "last_status",
        [](tav_settings s) {
            tav_settings_write_dword(s, L"status", 3);
            return Answer{tav_settings_last_status(s), L""};
        },
        {}, kWindowsStatus));

    // registry: the owner's own state.
    out.push_back(Registry(
        "close", 1,
        [](tav_registry key) {
            const int32_t closed = tav_registry_close(key);
            return Answer{closed, std::to_wstring(tav_registry_is_valid(key))};
        },
        {}, 0));
}

}  // namespace faults
