// Points the library's process-wide log stream (OutputToFILE::Stream()) elsewhere for the guard's lifetime:
// at a file of the test's own, or nowhere. The previous stream comes back when the guard goes, whatever
// the test's outcome, so that one test's capture cannot swallow the next test's log.
#pragma once

#include <TavUtil.h>

#include <cstdio>
#include <string>

namespace tavtest {

class ScopedLogStream {
public:
    // The log goes to `stream` (not owned); null turns the file output off.
    explicit ScopedLogStream(FILE* stream) : previous_(OutputToFILE::Stream()) { OutputToFILE::Stream() = stream; }
    // The log goes to a file opened with `mode`: L"w" writes text as the standard error stream does (wide text
    // as ANSI bytes, a line feed as carriage return and line feed), L"wb" the UTF-16 units unconverted.
    ScopedLogStream(const std::wstring& path, const wchar_t* mode) : ScopedLogStream(_wfopen(path.c_str(), mode)) {
        owned_ = OutputToFILE::Stream();
    }
    ~ScopedLogStream() { Restore(); }
    ScopedLogStream(const ScopedLogStream&) = delete;
    ScopedLogStream& operator=(const ScopedLogStream&) = delete;

    // The file was opened (for the constructor that opens one).
    bool ok() const { return owned_ != nullptr; }
    // Writes out what the file's buffer holds, so that the file can be read while the guard lives.
    void Flush() const {
        if (owned_ != nullptr)
            fflush(owned_);
    }
    // Puts the previous stream back now (and closes the file this guard opened); done once.
    void Restore() {
        if (restored_)
            return;
        restored_ = true;
        OutputToFILE::Stream() = previous_;
        if (owned_ != nullptr)
            fclose(owned_);
        owned_ = nullptr;
    }

private:
    FILE* previous_;
    FILE* owned_ = nullptr;
    bool restored_ = false;
};

}  // namespace tavtest
