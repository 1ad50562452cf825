/* A small checking kit for the C tests of the C interface: counted expectations that print the line of a
 * failure, and the text-out protocol checked in one go (size query, a too-small buffer with a guard word
 * after it, the exact size, a null buffer). */
#ifndef TAVUTIL_CAPI_CTESTKIT_H
#define TAVUTIL_CAPI_CTESTKIT_H

#include "capi/TavUtilC.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

extern int g_checks;
extern int g_failures;

void kit_fail(int line, const char* what, const char* detail);
void kit_expect_int(int line, const char* what, long long expected, long long actual);
void kit_expect_true(int line, const char* what, int condition);
void kit_expect_units(int line, const char* what, const wchar_t* expected, size_t expected_units, const wchar_t* actual,
                      size_t actual_units);
/* A buffer of `units` units filled with 0xAAAA, then a guard word; freed by kit_release. */
wchar_t* kit_buffer(size_t units);
/* True when the guard after `units` units is intact and, with `untouched`, no unit was written. */
int kit_intact(const wchar_t* buffer, size_t units, int untouched);
void kit_release(wchar_t* buffer);

#define EXPECT_INT(expected, actual) kit_expect_int(__LINE__, #actual, (long long)(expected), (long long)(actual))
#define EXPECT_TRUE(condition) kit_expect_true(__LINE__, #condition, (condition) != 0)
#define EXPECT_TEXT(expected, actual)                                                                                  \
    kit_expect_units(__LINE__, #actual, (expected), wcslen(expected) + 1, (actual), wcslen(actual) + 1)

/* Checks the whole text-out protocol of `fn(args..., buffer, capacity, needed)` against an expected answer of
 * `units` units (terminator(s) included) and an expected result; the answer is left in `out` (a buffer of
 * the exact size, freed by the caller with kit_release). The call is made five times. */
#define CHECK_OUT(out, expected_rc, expected, units, fn, ...)                                                          \
    do {                                                                                                               \
        size_t need_ = 12345;                                                                                          \
        wchar_t* small_;                                                                                               \
        kit_expect_int(__LINE__, #fn " size query", TAV_E_BUFFER_TOO_SMALL, fn(__VA_ARGS__, NULL, 0, &need_));         \
        kit_expect_int(__LINE__, #fn " needed", (long long)(units), (long long)need_);                                 \
        if (need_ > 1 && need_ < 1000000) {                                                                            \
            small_ = kit_buffer(need_ - 1);                                                                            \
            kit_expect_int(__LINE__, #fn " too small", TAV_E_BUFFER_TOO_SMALL,                                         \
                           fn(__VA_ARGS__, small_, need_ - 1, NULL));                                                  \
            kit_expect_true(__LINE__, #fn " guard and buffer untouched", kit_intact(small_, need_ - 1, 1));            \
            kit_release(small_);                                                                                       \
        }                                                                                                              \
        small_ = kit_buffer(1);                                                                                        \
        if ((units) > 1)                                                                                               \
            kit_expect_int(__LINE__, #fn " capacity 1", TAV_E_BUFFER_TOO_SMALL, fn(__VA_ARGS__, small_, 1, NULL));     \
        kit_expect_true(__LINE__, #fn " guard after capacity 1", kit_intact(small_, 1, (units) > 1));                  \
        kit_release(small_);                                                                                           \
        kit_expect_int(__LINE__, #fn " null buffer", TAV_E_NULL_ARGUMENT, fn(__VA_ARGS__, NULL, 8, NULL));             \
        out = kit_buffer(units);                                                                                       \
        kit_expect_int(__LINE__, #fn " result", (long long)(expected_rc), fn(__VA_ARGS__, out, units, &need_));        \
        kit_expect_units(__LINE__, #fn " answer", (expected), (units), out, (units));                                  \
        kit_expect_true(__LINE__, #fn " guard after the answer", kit_intact(out, units, 0));                           \
    } while (0)

/* CHECK_OUT for an expected NUL-terminated text; frees the buffer. */
#define CHECK_TEXT(expected_rc, expected, fn, ...)                                                                     \
    do {                                                                                                               \
        wchar_t* text_out_;                                                                                            \
        const wchar_t* text_expected_ = (expected);                                                                    \
        size_t text_units_ = wcslen(text_expected_) + 1;                                                               \
        CHECK_OUT(text_out_, expected_rc, text_expected_, text_units_, fn, __VA_ARGS__);                               \
        kit_release(text_out_);                                                                                        \
    } while (0)

#endif
