/* Every named constant of the C headers, as a C compiler sees it. The constants that mirror an enumeration
 * of the C++ interface (or the Windows show-window values) are compared with it (Reference.h:
 * ref_constant); the C layer's own numberings are checked by the functions that take them. The export check
 * fails when a constant of the headers is missing here. */
#include "CTests.h"

typedef struct named_constant {
    const char* name;
    long long value;
} named_constant;

#define C(name)                                                                                                        \
    { #name, (long long)(name) }

static const named_constant g_mirrored[] = {
    C(TAV_ACCOUNT_GROUP_ADMINISTRATORS),
    C(TAV_ACCOUNT_GROUP_POWER_USERS),
    C(TAV_ACCOUNT_GROUP_ADMINISTRATORS_OR_POWER_USERS),
    C(TAV_SKERR_NONE),
    C(TAV_SKERR_MISSING_CLOSE_BRACE),
    C(TAV_SKERR_INVALID_KEY),
    C(TAV_SKERR_MISSING_CLOSE_PAREN),
    C(TAV_SKERR_INVALID_COUNT),
    C(TAV_SKERR_STRING_TOO_LONG),
    C(TAV_SKERR_BUSY),
    C(TAV_SKERR_MENU_FAILED),
    C(TAV_SKERR_COMMAND_DONE),
    C(TAV_RECORD_IGNORE_INJECTED),
    C(TAV_KEYS_END_HOLD),
    C(TAV_KEYS_BEGIN_HOLD),
    C(TAV_KEYS_SYNC),
    C(TAV_SEND_OPTIONS_SIZE_1),
    C(TAV_SEND_WAIT_FOR_RELEASE),
    C(TAV_SEND_RELEASE_MODIFIERS),
    C(TAV_SW_HIDE),
    C(TAV_SW_SHOWNORMAL),
    C(TAV_SW_SHOWMINIMIZED),
    C(TAV_SW_SHOWMAXIMIZED),
    C(TAV_SW_SHOWNOACTIVATE),
    C(TAV_SW_SHOW),
    C(TAV_SW_MINIMIZE),
    C(TAV_SW_SHOWMINNOACTIVE),
    C(TAV_SW_SHOWNA),
    C(TAV_SW_RESTORE),
    C(TAV_SW_SHOWDEFAULT),
    C(TAV_SW_FORCEMINIMIZE),
    C(TAV_LOG_ERROR),
    C(TAV_LOG_WARNING),
    C(TAV_LOG_INFO),
    C(TAV_LOG_DEBUG),
    C(TAV_LOG_DEBUG1),
    C(TAV_LOG_DEBUG2),
    C(TAV_LOG_DEBUG3),
    C(TAV_LOG_DEBUG4),
    C(TAV_OS_UNKNOWN),
    C(TAV_OS_WIN95),
    C(TAV_OS_WIN9X_REVISED),
    C(TAV_OS_WIN98),
    C(TAV_OS_WINME),
    C(TAV_OS_WINNT351),
    C(TAV_OS_WINNT4),
    C(TAV_OS_WIN2000),
    C(TAV_OS_WINXP),
    C(TAV_OS_VISTA),
    C(TAV_OS_WIN7),
    C(TAV_OS_CLASS_WIN95),
    C(TAV_OS_CLASS_WIN98),
    C(TAV_OS_CLASS_WINME),
    C(TAV_OS_CLASS_NT3),
    C(TAV_OS_CLASS_NT4),
    C(TAV_OS_CLASS_WIN2K),
    C(TAV_OS_CLASS_WINXP),
    C(TAV_OS_CLASS_NEWER),
    C(TAV_SOUND_ASYNC),
    C(TAV_SOUND_SYNC),
    C(TAV_SOUND_LOOP),
    C(TAV_VERNUM_OLDER),
    C(TAV_VERNUM_EQUAL),
    C(TAV_VERNUM_NEWER_BUILD),
    C(TAV_VERNUM_NEWER_FIX),
    C(TAV_VERNUM_NEWER_MINOR),
    C(TAV_VERNUM_NEWER_MAJOR),
    C(TAV_VERFIELD_FILE_VERSION_NUMBER),
    C(TAV_VERFIELD_PRODUCT_VERSION_NUMBER),
    C(TAV_VERFIELD_COMMENTS),
    C(TAV_VERFIELD_COMPANY_NAME),
    C(TAV_VERFIELD_FILE_DESCRIPTION),
    C(TAV_VERFIELD_FILE_VERSION),
    C(TAV_VERFIELD_INTERNAL_NAME),
    C(TAV_VERFIELD_LEGAL_COPYRIGHT),
    C(TAV_VERFIELD_LEGAL_TRADEMARKS),
    C(TAV_VERFIELD_ORIGINAL_FILENAME),
    C(TAV_VERFIELD_PRIVATE_BUILD),
    C(TAV_VERFIELD_PRODUCT_NAME),
    C(TAV_VERFIELD_PRODUCT_VERSION),
    C(TAV_VERFIELD_SPECIAL_BUILD),
    C(TAV_VERFIELD_PRODUCT_BUILD_NUMBER),
    C(TAV_WAIT_WAITING),
    C(TAV_WAIT_ABORTED),
    C(TAV_WAIT_TIMEOUT),
    C(TAV_WAIT_QUIT),
    C(TAV_WAIT_COMMAND),
};

static const named_constant g_own[] = {
    C(TAV_OK),
    C(TAV_E_NULL_ARGUMENT),
    C(TAV_E_BUFFER_TOO_SMALL),
    C(TAV_E_NULL_HANDLE),
    C(TAV_E_UNKNOWN_ENUM),
    C(TAV_E_EXCEPTION),
    C(TAV_E_OUT_OF_RANGE),
    C(TAV_E_OUT_OF_MEMORY),
    C(TAV_RESULT_C),
    C(TAV_RESULT_WIN32),
    C(TAV_RESULT_HRESULT),
    C(TAV_RESULT_SKERR),
    C(TAV_RESULT_WAIT),
    C(TAV_LOG_TO_STDERR),
    C(TAV_LOG_TO_FILE),
    C(TAV_LOG_TO_NONE),
    C(TAV_OS_USE_VXD_DRIVER),
    C(TAV_OS_USE_SYS_DRIVER),
    C(TAV_OS_DISTINGUISHES_LEFT_RIGHT_MODIFIERS),
    C(TAV_OS_USB_SUPPORTED),
    C(TAV_OS_BLUETOOTH_SUPPORTED),
    C(TAV_OS_802_11B_SUPPORTED),
    C(TAV_OS_UNDERLYING_64BIT),
};

/* The numbering a constant of the C layer's own belongs to. */
static int numbering(const char* name) {
    if (strcmp(name, "TAV_OK") == 0 || strncmp(name, "TAV_E_", 6) == 0)
        return 0;
    if (strncmp(name, "TAV_RESULT_", 11) == 0)
        return 1;
    if (strncmp(name, "TAV_LOG_TO_", 11) == 0)
        return 2;
    return 3; /* the questions of tav_os_ask */
}

void test_constants(void) {
    size_t i;
    size_t j;
    for (i = 0; i < sizeof g_mirrored / sizeof g_mirrored[0]; ++i) {
        long long cxx = -12345;
        if (!ref_constant(g_mirrored[i].name, &cxx))
            kit_fail(__LINE__, g_mirrored[i].name, "mirrors no C++ value");
        kit_expect_int(__LINE__, g_mirrored[i].name, cxx, g_mirrored[i].value);
    }
    /* The C layer's own numberings: no two constants of a kind share a number, and each is taken. */
    for (i = 0; i < sizeof g_own / sizeof g_own[0]; ++i)
        for (j = 0; j < i; ++j)
            if (numbering(g_own[i].name) == numbering(g_own[j].name) && g_own[i].value == g_own[j].value)
                kit_fail(__LINE__, g_own[i].name, "shares its number");
    for (i = TAV_RESULT_C; i <= TAV_RESULT_WAIT; ++i)
        EXPECT_TRUE(tav_result_text((int32_t)i, 0, NULL, 0, NULL) == TAV_E_BUFFER_TOO_SMALL);
    for (i = TAV_OS_USE_VXD_DRIVER; i <= TAV_OS_UNDERLYING_64BIT; ++i)
        EXPECT_TRUE(tav_os_ask((int32_t)i) == 0 || tav_os_ask((int32_t)i) == 1);
    EXPECT_INT(TAV_LOG_TO_NONE, TAV_LOG_TO_FILE + 1);
    EXPECT_INT(TAV_LOG_TO_FILE, TAV_LOG_TO_STDERR + 1);
    for (i = 0; i < sizeof g_own / sizeof g_own[0]; ++i)
        if (strncmp(g_own[i].name, "TAV_E_", 6) == 0) {
            wchar_t text[128];
            EXPECT_INT(TAV_OK, tav_result_text(TAV_RESULT_C, (int32_t)g_own[i].value, text, 128, NULL));
            EXPECT_TRUE(wcsncmp(text, L"Unknown", 7) != 0);
            EXPECT_TRUE(g_own[i].value < 0);
        }
}
