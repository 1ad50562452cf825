/* The C tests of the C interface, one function per area header, and what they share. */
#ifndef TAVUTIL_CAPI_CTESTS_H
#define TAVUTIL_CAPI_CTESTS_H

#include "CTestKit.h"
#include "Reference.h"

#include <windows.h>

/* One test function per area header (tests/capi/<Area>Test.c tests c/<area>.h), in the order the main
 * program calls them. */
void test_common(void);
void test_strings(void);
void test_os(void);
void test_log(void);
void test_keys(HWND edit);
void test_recorder(HWND edit);
void test_clipboard(void);
void test_foreground(void);
void test_windows(HWND window, HWND edit);
void test_waits(HWND window);
void test_sounds(void);
void test_pickers(void);
void test_launch(void);
void test_processes(HWND window);
void test_registry(void);
void test_settings(void);
void test_paths(void);
void test_versions(void);
void test_textfile(void);
void test_software(void);
void test_com(void);
void test_accounts(void);
void test_support(void);
/* Every named constant of the headers, against the C++ enumerations it mirrors. */
void test_constants(void);
/* The rule every text argument of every area follows: a stray number is never read. */
void test_stray_text(void);

/* This program's own path, and a scratch folder of the run (ends with a backslash). */
extern wchar_t g_self[MAX_PATH];
extern wchar_t g_scratch[MAX_PATH];
/* Pumps this thread's messages until `condition(context)` holds or `timeout_ms` passes. */
int wait_until(int (*condition)(void*), void* context, DWORD timeout_ms);

#endif
