#include "files/TextFile.h"

#include <new>

cTextFile::cTextFile() : m_size(0), m_position(0) {}

cTextFile::~cTextFile() = default;

// Read is meant to be called once per object. Called again, it replaces the first file and buffer
// (which the owners release) rather than keeping them open and allocated; the size is reset with the
// buffer, so that it never counts more bytes than the buffer now holds.
//
// When no byte is read the result is inverted: true when ReadFile failed, false when it succeeded. An
// empty file therefore reads as false, with a one-byte buffer that holds no terminator and a size of 0.
// Hosts treat false as "nothing to scan"; the result is kept as it is.
bool cTextFile::Read(const CStdStr<wchar_t>& path) {
    m_file.reset(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!m_file)
        return false;
    DWORD size = GetFileSize(m_file.get(), nullptr);
    if (size == INVALID_FILE_SIZE)
        return false;
    m_buffer.reset(new (std::nothrow) char[static_cast<size_t>(size) + 1]);
    m_size = 0;
    if (!m_buffer)
        return false;
    DWORD read = 0;
    BOOL ok = ReadFile(m_file.get(), m_buffer.get(), size, &read, nullptr);
    if (read > 0) {
        m_buffer[read] = '\0';
        m_size = read;
        return true;
    }
    return !ok;
}

bool cTextFile::GetNextLine(CStdStr<wchar_t>& line) {
    line.clear();
    return false;
}
