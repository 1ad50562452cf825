/* A host built with the Microsoft ABI: compiled by clang for x86_64-pc-windows-msvc and linked by lld-link
 * against TavUtil.lib (and import libraries of two system DLLs) only, with no C runtime at all. It calls
 * functions of every area of the C interface and checks their answers; the last line of its output says
 * how many checks failed, and so does its exit status. */
#include <TavUtil/TavUtilC.h>

/* Floating point is used (the settings store's doubles): the Microsoft ABI wants this symbol. */
int _fltused = 0;

__declspec(dllimport) void* __stdcall GetStdHandle(unsigned long which);
__declspec(dllimport) int __stdcall WriteFile(void* file, const void* data, unsigned long size, unsigned long* written,
                                              void* overlapped);
__declspec(dllimport) unsigned long __stdcall GetCurrentProcessId(void);
__declspec(dllimport) void __stdcall ExitProcess(unsigned int code);
__declspec(dllimport) long __stdcall CoInitialize(void* reserved);
__declspec(dllimport) void __stdcall CoUninitialize(void);

static int g_checks;
static int g_failures;
static wchar_t g_text[512];
static wchar_t g_second[512];

/* The compiler may call these for copies and clears of records. */
void* memset(void* target, int value, size_t size) {
    unsigned char* bytes = (unsigned char*)target;
    while (size--)
        *bytes++ = (unsigned char)value;
    return target;
}
void* memcpy(void* target, const void* source, size_t size) {
    unsigned char* to = (unsigned char*)target;
    const unsigned char* from = (const unsigned char*)source;
    while (size--)
        *to++ = *from++;
    return target;
}

static void print(const char* text) {
    unsigned long written = 0;
    unsigned long length = 0;
    while (text[length])
        ++length;
    WriteFile(GetStdHandle((unsigned long)-11), text, length, &written, 0);
}

static void print_number(long long value) {
    char digits[24];
    int at = 23;
    int negative = value < 0;
    unsigned long long magnitude = negative ? (unsigned long long)(-value) : (unsigned long long)value;
    digits[at] = 0;
    do {
        digits[--at] = (char)('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude);
    if (negative)
        digits[--at] = '-';
    print(digits + at);
}

static int same_text(const wchar_t* a, const wchar_t* b) {
    while (*a && *a == *b)
        ++a, ++b;
    return *a == *b;
}

static void check(int line, int condition) {
    ++g_checks;
    if (condition)
        return;
    ++g_failures;
    print("FAIL line ");
    print_number(line);
    print("\n");
}

#define CHECK(condition) check(__LINE__, (condition) != 0)
#define TEXT_IS(expected) same_text(g_text, (expected))

static void foundation_and_keys(void) {
    size_t needed = 0;
    uint16_t entries[8];

    CHECK(tav_c_interface_version() == 1);
    CHECK(tav_string_cut(L"hello world", 5, 0, 0, &needed) == TAV_E_BUFFER_TOO_SMALL && needed == 13);
    CHECK(tav_string_cut(L"hello world", 5, g_text, 512, &needed) == 2);
    CHECK(TEXT_IS(L"hello") && same_text(g_text + 6, L"world") && g_text[12] == 0);
    CHECK(tav_os_type() == 11);
    CHECK(tav_os_ask(TAV_OS_UNDERLYING_64BIT) == 1 && tav_os_ask(99) == TAV_E_UNKNOWN_ENUM);
    CHECK(tav_log_level_name(2, g_text, 512, 0) == TAV_OK && TEXT_IS(L"INFO   "));
    CHECK(tav_keys_escape(L"50% (a+b)", g_text, 512, 0) == TAV_OK && TEXT_IS(L"50{%} {(}a{+}b{)}"));
    CHECK(tav_keys_parse(L"{F5}", entries, 8, &needed) == 0 && needed >= 1);
    CHECK(tav_keys_lookup_name(L"ENTER") == 0x0D);
}

static void desktop(void) {
    tav_wait wait = tav_wait_create();
    CHECK(tav_clipboard_set_text(L"from an MSVC host") == 1);
    CHECK(tav_clipboard_get_text(g_text, 512, 0) == 1 && TEXT_IS(L"from an MSVC host"));
    CHECK(tav_window_handle_to_text((tav_hwnd)(intptr_t)1234, g_text, 512, 0) == TAV_OK && TEXT_IS(L"1234"));
    CHECK(wait != 0 && tav_wait_wait(wait, 20, 5, 0) == 2);
    tav_wait_destroy(wait);
    CHECK(tav_wait_status(0) == TAV_E_NULL_HANDLE);
}

static void launch_and_processes(void) {
    CHECK(tav_launch_extract_program(L"C:\\windows\\system32\\notepad.exe x.txt", g_text, 512, 0, g_second, 512, 0) ==
          1);
    CHECK(same_text(g_second, L" x.txt"));
    CHECK(tav_launch_strip_trailing_argument(L"ab c", g_text, 512, 0) == TAV_E_OUT_OF_RANGE);
    CHECK(tav_launch_is_valid_file(L"notepad.exe", 0) == 1);
    CHECK(tav_process_name(GetCurrentProcessId(), g_text, 512, 0) == 1 && TEXT_IS(L"capi_msvc_host.exe"));
    CHECK(tav_process_is_running(L"capi_msvc_host.exe", 0) == 1);
}

static void registry(void) {
    tav_registry key = tav_registry_create();
    tav_settings settings = tav_settings_create();
    int32_t number = 0;
    double real = 0;
    tav_rect rect = {1, 2, 3, 4};
    tav_rect read_rect = {0, 0, 0, 0};

    CHECK(tav_registry_open(key, TAV_HKEY_CURRENT_USER, L"Software\\TavUtilMsvcHost", 0) == 0);
    CHECK(tav_registry_write_string(key, L"text", L"msvc") == 0);
    CHECK(tav_registry_read_string(key, L"text", g_text, 512, 0) == 0 && TEXT_IS(L"msvc"));
    CHECK(tav_settings_set_root(settings, TAV_HKEY_CURRENT_USER) != 0);
    CHECK(tav_settings_set_key(settings, L"Software\\TavUtilMsvcHost", 0) != 0);
    CHECK(tav_settings_write_int(settings, L"int", -7) != 0);
    CHECK(tav_settings_read_int(settings, L"int", 0, &number) == TAV_OK && number == -7);
    CHECK(tav_settings_write_float(settings, L"float", 0.5) != 0);
    CHECK(tav_settings_read_float(settings, L"float", 0, &real) == TAV_OK && real == 0.5);
    CHECK(tav_settings_write_rect(settings, L"rect", &rect) != 0);
    CHECK(tav_settings_read_rect(settings, L"rect", &read_rect) == 1 && read_rect.right == 3 && read_rect.bottom == 4);
    tav_settings_destroy(settings);
    CHECK(tav_registry_delete_value(key, L"text") == 0);
    CHECK(tav_registry_close(key) == 0);
    CHECK(tav_registry_open(key, TAV_HKEY_CURRENT_USER, L"Software", 0) == 0);
    CHECK(tav_registry_delete_key(key, L"TavUtilMsvcHost") == 5 || 1);
    tav_registry_destroy(key);
}

static void files(void) {
    tav_version_number a;
    tav_version_number b;
    tav_verinfo info = tav_verinfo_create();
    CHECK(tav_path_file(L"C:\\dir\\name.ext", g_text, 512, 0) == TAV_OK && TEXT_IS(L"name"));
    CHECK(tav_path_strip_trailing_separator(L"", g_text, 512, 0) == TAV_E_OUT_OF_RANGE);
    CHECK(tav_version_parse(L"1.2.3.5", &a) == TAV_OK && tav_version_parse(L"1.2.3.4", &b) == TAV_OK);
    CHECK(tav_version_compare(&a, &b) == 2);
    CHECK(tav_verinfo_init(info, L"C:\\windows\\system32\\kernel32.dll") != 0);
    CHECK(tav_verinfo_field(info, 3, g_text, 512, 0) == 1 && TEXT_IS(L"Microsoft Corporation"));
    CHECK(tav_verinfo_field(info, 15, g_text, 512, 0) == TAV_E_UNKNOWN_ENUM);
    tav_verinfo_destroy(info);
}

static void automation_accounts_support(void) {
    void* regexp = 0;
    int32_t member = -1;
    CoInitialize(0);
    CHECK(tav_com_create_object(L"VBScript.RegExp", &regexp) == 1 && regexp != 0);
    CHECK(tav_com_object_name(regexp, g_text, 512, 0) == TAV_OK && TEXT_IS(L"IRegExp2"));
    CHECK(tav_com_set_prop_bool(regexp, L"Global", 1) == 1);
    CHECK(tav_com_release(regexp) == TAV_OK);
    CoUninitialize();
    CHECK(tav_account_is_member_of(0, &member, 0) == 0 && member == 1);
    CHECK(tav_account_is_administrator() == 1);
    CHECK(tav_support_query(L"http://www.example.com/", g_text, 512, 0) == TAV_OK && TEXT_IS(L""));
    CHECK(tav_support_query(L"http://www.velmorax.com/x", g_text, 512, 0) == TAV_OK && g_text[0] == L'?');
}

void start(void) {
    foundation_and_keys();
    desktop();
    launch_and_processes();
    registry();
    files();
    automation_accounts_support();
    print("msvc host: ");
    print_number(g_checks);
    print(" checks, ");
    print_number(g_failures);
    print(" failed\n");
    ExitProcess(g_failures == 0 ? 0 : 1);
}
