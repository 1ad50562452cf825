// fuzz_peer.exe as a child of a driver: started from any path with its standard input and output piped, its
// "ready" line awaited, and ended (with its handles closed) when the object goes, whatever the outcome.
#pragma once

#include <windows.h>

#include <string>

namespace fuzz {

class Peer {
public:
    Peer() = default;
    ~Peer() { End(); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    // Starts the program at `path` with `argument` and waits up to ten seconds for its ready line; false when
    // it could not be started or did not answer (it is then ended).
    bool Start(const std::wstring& path, const std::wstring& argument);
    void End();

    DWORD id() const { return processId_; }
    HANDLE process() const { return process_; }
    HWND window() const { return window_; }  // its hidden window (in "wait" mode)
    // Writes to its standard input; reads exactly `size` bytes of its output within `timeoutMs`.
    bool Write(const void* data, size_t size);
    bool Read(void* data, size_t size, DWORD timeoutMs);

private:
    HANDLE process_ = nullptr;
    HANDLE input_ = nullptr;   // our end of its standard input
    HANDLE output_ = nullptr;  // our end of its standard output
    DWORD processId_ = 0;
    HWND window_ = nullptr;
};

// The folder of the test program, where fuzz_peer.exe was built.
std::wstring PeerProgram();

}  // namespace fuzz
