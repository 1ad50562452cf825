// What a soak run watches in its own process: kernel handles, GDI objects, windows and private memory.
// Wine answers 0 to GetProcessHandleCount and GetGuiResources, so each count is taken at its source:
// handles from the system's handle list, GDI objects from the process's GDI handle table, windows by
// enumeration, and memory both as heap bytes in use (exact, for small leaks) and as committed private
// pages (coarse, for leaks that bypass the heaps).
#pragma once

#include <cstdint>
#include <string>

namespace soak {

struct Reading {
    long handles = 0;
    long gdiObjects = 0;
    long windows = 0;
    int64_t heapBytes = 0;     // bytes of busy blocks in every heap of the process
    int64_t privateBytes = 0;  // committed private pages
};

Reading Measure();

// Number of GDI objects the process holds; -1 when it cannot be read.
long GdiObjectCount();
// Windows of this process: top-level, their descendants, and message-only windows.
long WindowCount();
int64_t HeapBytesInUse();
int64_t PrivateCommittedBytes();

// "12.3 KiB", "-512 B"
std::string Bytes(int64_t bytes);

}  // namespace soak
