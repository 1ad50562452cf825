#include "CTestKit.h"

#define GUARD_WORD 0xBEEFu
#define FILL_WORD 0xAAAAu

int g_checks;
int g_failures;

void kit_fail(int line, const char* what, const char* detail) {
    ++g_failures;
    printf("FAIL line %d: %s: %s\n", line, what, detail);
    fflush(stdout);
}

void kit_expect_int(int line, const char* what, long long expected, long long actual) {
    char detail[96];
    ++g_checks;
    if (expected == actual)
        return;
    snprintf(detail, sizeof detail, "expected %lld (0x%llx), got %lld (0x%llx)", expected, (unsigned long long)expected,
             actual, (unsigned long long)actual);
    kit_fail(line, what, detail);
}

void kit_expect_true(int line, const char* what, int condition) {
    ++g_checks;
    if (!condition)
        kit_fail(line, what, "not true");
}

static void print_units(const wchar_t* text, size_t units) {
    size_t i;
    for (i = 0; i < units && i < 200; ++i) {
        unsigned unit = (unsigned)text[i];
        if (unit >= 32 && unit < 127)
            putchar((int)unit);
        else
            printf("\\x%04x", unit);
    }
}

void kit_expect_units(int line, const char* what, const wchar_t* expected, size_t expected_units, const wchar_t* actual,
                      size_t actual_units) {
    ++g_checks;
    if (expected_units == actual_units && memcmp(expected, actual, expected_units * sizeof(wchar_t)) == 0)
        return;
    kit_fail(line, what, "texts differ");
    printf("    expected \"");
    print_units(expected, expected_units);
    printf("\"\n    actual   \"");
    print_units(actual, actual_units);
    printf("\"\n");
}

wchar_t* kit_buffer(size_t units) {
    size_t i;
    wchar_t* buffer = (wchar_t*)malloc((units + 1) * sizeof(wchar_t));
    if (buffer == NULL) {
        puts("out of memory");
        exit(3);
    }
    for (i = 0; i < units; ++i)
        buffer[i] = (wchar_t)FILL_WORD;
    buffer[units] = (wchar_t)GUARD_WORD;
    return buffer;
}

int kit_intact(const wchar_t* buffer, size_t units, int untouched) {
    size_t i;
    if ((unsigned)buffer[units] != GUARD_WORD)
        return 0;
    if (untouched)
        for (i = 0; i < units; ++i)
            if ((unsigned)buffer[i] != FILL_WORD)
                return 0;
    return 1;
}

void kit_release(wchar_t* buffer) { free(buffer); }
