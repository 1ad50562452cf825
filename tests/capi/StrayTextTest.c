/* A text pointer below 0x10000 that is not null is a stray integer of the host, never text: every function
 * that takes text refuses it with TAV_E_NULL_ARGUMENT before it reads or does anything, whichever of its
 * text arguments it is in. One call per text argument of every such function in capi/TavUtilC.h; the other
 * arguments are harmless (null handles, an output buffer), so a function that did read the number would
 * crash this program or answer otherwise. */
#include "CTests.h"

#define STRAY ((const wchar_t*)(uintptr_t)0x1234)
#define OUT_UNITS 64

static wchar_t g_out[OUT_UNITS];

void test_stray_text(void) {
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_cut(STRAY, 0, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_set_length(STRAY, 0, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_ensure_trailing_backslash(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_string_strip_trailing_backslash(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_write(0, STRAY, 0, L"x", L"x"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_write(0, L"x", 0, STRAY, L"x"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_write(0, L"x", 0, L"x", STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_level_from_name(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_log_set_output(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_run(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_text(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys_paced(STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_text_paced(STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_run_paced(STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_escape(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_parse(STRAY, NULL, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_check(STRAY, NULL, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_keys_lookup_name(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_clipboard_set_text(STRAY));
    EXPECT_TRUE(tav_window_child_by_class(0, STRAY) == NULL); /* tav_hwnd */
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_sound_play(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_files(STRAY, L"x", L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_files(L"x", STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_files(L"x", L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_folder(STRAY, L"x", 0, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_picker_folder(L"x", STRAY, 0, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_extract_program(STRAY, g_out, OUT_UNITS, NULL, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_strip_trailing_argument(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_is_valid_file(STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_command_line(STRAY, 0, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_program(STRAY, L"x", 0, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_program(L"x", STRAY, 0, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_and_wait_for_init(STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_launch_messenger(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_process_is_running(STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_open(0, 0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_read_string(0, STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_write_string(0, STRAY, L"x"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_write_string(0, L"x", STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_query_value(0, STRAY, NULL, NULL, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_set_value(0, STRAY, 0, NULL, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_delete_value(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_registry_delete_key(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_create_key(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_set_key(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_key_exists(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_delete_key(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_delete_value(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_value_exists(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_data_size(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_data_type(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_rename_value(0, STRAY, L"x"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_rename_value(0, L"x", STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_string(0, STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_string(0, L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_dword(0, STRAY, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_int(0, STRAY, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_bool(0, STRAY, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_color(0, STRAY, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_float(0, STRAY, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_date_time(0, STRAY, NULL, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_binary(0, STRAY, NULL, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_rect(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_point(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_size(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_read_font(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_string(0, STRAY, L"x"));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_string(0, L"x", STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_dword(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_int(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_bool(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_color(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_float(0, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_date_time(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_rect(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_point(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_size(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_settings_write_font(0, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_drive(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_dir_no_drive(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_file(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_extension(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_dir(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_split(STRAY, g_out, OUT_UNITS, NULL, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_compose(STRAY, L"x", L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_compose(L"x", STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_compose(L"x", L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_beside_exe(STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_beside_exe(L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_from_path_and_file(STRAY, L"x", L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_from_path_and_file(L"x", STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_from_path_and_file(L"x", L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_set_filename(STRAY, L"x", L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_set_filename(L"x", STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_set_filename(L"x", L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_append_directory(STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_append_directory(L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_strip_extension(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_strip_trailing_separator(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_strip_path(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_file_exists(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_exists(STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_path_create_directory(STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_version_parse(STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_verinfo_init(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_textfile_read(0, STRAY));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_software_application_path(STRAY, L"x", g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_software_application_path(L"x", STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_software_progid_server(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_active_app(STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_app_dispatch(STRAY, 0, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_create_object(STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_find_in_rot(STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_prop_long(NULL, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_prop_bool(NULL, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_disp(NULL, STRAY, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_get_prop_string(NULL, STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_com_set_prop_bool(NULL, STRAY, 0));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_support_query(STRAY, g_out, OUT_UNITS, NULL));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_support_query_with_trigger(STRAY, NULL, g_out, OUT_UNITS, NULL));
    /* The whole range below 0x10000 is refused. */
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys((const wchar_t*)(uintptr_t)1));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys((const wchar_t*)(uintptr_t)0xFFFF));
    EXPECT_INT(TAV_E_NULL_ARGUMENT, tav_send_keys(NULL));
    EXPECT_TRUE(g_out[0] == 0);
}
