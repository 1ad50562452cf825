// cTextFile: a whole file in memory as raw bytes followed by a zero byte, for callers that scan small
// text files themselves. No character conversion and no line splitting: the buffer holds the bytes
// exactly as stored.
#pragma once

#include "../platform/Export.h"
#include "../platform/Handles.h"
#include "../strings/StdStr.h"

#include <memory>

class TAVUTIL_API cTextFile {
public:
    cTextFile();
    virtual ~cTextFile();

    // The object owns its open file and its buffer, so copies are not allowed: two owners would both
    // release them.
    cTextFile(const cTextFile&) = delete;
    cTextFile& operator=(const cTextFile&) = delete;

    // Opens `path` for reading (kept open until the object goes) and reads it whole. See the definition
    // for the result on an empty file.
    bool Read(const CStdStr<wchar_t>& path);

    const char* GetBuffer() { return m_buffer.get(); }  // null before Read allocated it
    unsigned long GetSize() const { return m_size; }

    // Line reading is not provided: empties `line` and returns false. Callers split the buffer.
    bool GetNextLine(CStdStr<wchar_t>& line);

private:
    tav::UniqueFile m_file;
    std::unique_ptr<char[]> m_buffer;
    unsigned long m_size;
    long m_position;  // read position, 0; no operation uses it
};
