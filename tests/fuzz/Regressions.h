// Inputs that once failed a driver, kept as rows that every pass runs first. A failing input's row is
// printed by the harness and written to fuzz-failures.txt; paste it here when its defect is fixed.
#pragma once

#include "Fuzz.h"

namespace fuzz {

inline const Row kRegressionRows[] = {
    // Path without a drive letter whose folder cannot be created: the climb once never ended.
    {"filename", L"\\tav<bad>\\d\\f.txt", 0},
    {"mkdir", L"\\\\tav<bad>\\share\\d\\f.txt", 1},
    // A composition in a path with an overlong part once gave a name relative to the current folder.
    {"filename",
     L"C:"
     L"\\dir\\nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"
     L"nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"
     L"nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn.txt",
     3},
    // The most negative count once overflowed the repeat loop.
    {"parser", L"{a -2147483648}", 0},
    // A count of 47 digits overflowed the reference model's own sum (found on the hardened build).
    {"parser", L"{a 61444444444444444444444444444444444444444444444}", 3685527550555363021ull},
    // A damaged version block whose lengths ran past it: the platform's queries read beyond the buffer, and
    // two reads of one field gave different texts (found through the C interface).
    {"capi-verinfo", L"", 12254035893645417786ull},
    {"verinfo", L"", 12254035893645417786ull},
    // A file named after a device ("aux") once reached the device instead of a file (the harness's naming).
    {"textfile", L"aux", 6993487248827594899ull},
    {"capi-textfile", L"Con  ", 0},
    // Property values whose type holds no string or object (a number's bits, a reference, an array, a type
    // that does not exist) were read as one by GetDisp and GetPropW, which crashed the host.
    {"automation", L"Name", 17750726234434139842ull},
    {"automation", L"Value", 14819474691791705979ull},
    {"automation", L"Value", 1437278676512512823ull},
    // A child started as "trail. .EXE" from the file "trail. .exe" (the rename to the new case changed
    // nothing) is named by the platform as it was started, not as the file on disk.
    {"processes", L"trail. ", 1},
    {"processes", L"trail. ", 4326493632787815889ull},
    {"capi-processes", L"trail. ", 1},
    {"capi-processes", L"trail. ", 4326493632787815889ull},
};

}  // namespace fuzz
