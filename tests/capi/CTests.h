/* The C tests of the C interface, one function per area, and what they share. */
#ifndef TAVUTIL_CAPI_CTESTS_H
#define TAVUTIL_CAPI_CTESTS_H

#include "CTestKit.h"
#include "Reference.h"

#include <windows.h>

void test_foundation(void);
void test_logging(void);
void test_keys(HWND edit);
void test_desktop(HWND window, HWND edit);
void test_pickers(void);
void test_launch(void);
void test_processes(HWND window);
void test_registry(void);
void test_settings(void);
void test_files(void);
void test_automation(void);
void test_accounts_and_support(void);
void test_stray_text(void);

/* This program's own path, and a scratch folder of the run (ends with a backslash). */
extern wchar_t g_self[MAX_PATH];
extern wchar_t g_scratch[MAX_PATH];
/* Pumps this thread's messages until `condition(context)` holds or `timeout_ms` passes. */
int wait_until(int (*condition)(void*), void* context, DWORD timeout_ms);

#endif
