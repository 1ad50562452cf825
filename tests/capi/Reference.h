/* What the C++ interface answers for the inputs the C test uses: the C test compares the C interface's
 * answers with these. Texts are returned in buffers owned here, valid until the next call of the same
 * function. */
#ifndef TAVUTIL_CAPI_REFERENCE_H
#define TAVUTIL_CAPI_REFERENCE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ref_trigger_device {
    int has_device;
    int kind;
    unsigned number;
} ref_trigger_device;

int ref_os_type(void);
unsigned ref_os_build_number(void);
unsigned ref_os_platform_id(void);
unsigned ref_os_service_pack_major(void);
unsigned ref_os_service_pack_minor(void);
const wchar_t* ref_os_service_pack(void);
int ref_os_ask(int question);
int ref_platform_classification(void);
int ref_platform_is_win9x(void);
int ref_vista_is_vista(void);
int ref_vista_is_dwm_composition_enabled(void);
/* StringCut's pieces as a list (NUL after each, one more at the end); units through `units`. */
const wchar_t* ref_string_cut(const wchar_t* text, int width, size_t* units, int* pieces);
/* The key queue after ParseKeyScript: the result, the entries through `entries` and `count`. */
int ref_keys_parse(const wchar_t* script, const uint16_t** entries, size_t* count);
int ref_keys_run_result(const wchar_t* script);
/* CheckKeyScript: its result, offset and message (valid until the next call). */
int ref_keys_check(const wchar_t* script, int32_t* offset, const wchar_t** message);
void* ref_focus_window(void* window);
void* ref_child_by_class(void* parent, const wchar_t* class_name);
const wchar_t* ref_handle_to_text(void* window);
const wchar_t* ref_sound_application_name(void);
int ref_extract_program(const wchar_t* line, const wchar_t** program, const wchar_t** args);
const wchar_t* ref_strip_trailing_argument(const wchar_t* line);
const wchar_t* ref_messengers(size_t* units, int* count);
int ref_is_pv_app_installed(const wchar_t** path);
const wchar_t* ref_foreground_name(intptr_t window);
const wchar_t* ref_foreground_full_name(intptr_t window);
int ref_process_is_running(const wchar_t* name, int console_only);
const wchar_t* ref_process_modules(unsigned pid, size_t* units, int* found);
const wchar_t* ref_path_compose(const wchar_t* path, const wchar_t* file, const wchar_t* ext);
const wchar_t* ref_path_beside_exe(const wchar_t* file, const wchar_t* ext);
const wchar_t* ref_path_exe_dir(void);
int ref_version_compare(const wchar_t* a, const wchar_t* b);
int ref_verinfo_field(const wchar_t* file, int field, const wchar_t** text);
const wchar_t* ref_verinfo_field_name(int field);
const wchar_t* ref_install_date(void);
int ref_find_application_path(const wchar_t* app, const wchar_t* ext, const wchar_t** path);
int ref_find_progid_server(const wchar_t* prog_id, const wchar_t** path);
long ref_try_get_active_object_result(const void* clsid);
const wchar_t* ref_object_name(void* dispatch);
long ref_is_member_of(int group, int* is_member);
int ref_is_administrator(void);
int ref_is_administrator_or_power_user(void);
const wchar_t* ref_support_query(const wchar_t* address);
/* device null: the trigger variant without a trigger. */
const wchar_t* ref_support_query_with_trigger(const wchar_t* address, const ref_trigger_device* device);

/* The value the C++ interface (or, for TAV_SW_*, the Windows headers) gives the C constant `name`: 1 and the
 * value, or 0 for a name that mirrors nothing (Constants.cpp). */
int ref_constant(const char* name, long long* value);

#ifdef __cplusplus
}
#endif

#endif
