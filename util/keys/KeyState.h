// The key queue and the hold list of keystroke synthesis, and read access to the process-wide instances.
#pragma once

#include "../platform/Export.h"

#include <windows.h>

namespace tav::keys {

// Queue entries besides virtual-key codes (whose low byte is what is sent).
constexpr WORD kBeginHold = 0xFFFE;  // '['
constexpr WORD kEndHold = 0xFFFD;    // ']'
constexpr WORD kNoKey = 0xFFFF;      // QUEUESYNC, and VkKeyScanW's answer for a character no key produces

// The keys of one script, in order: written by the parser, read by the player.
class TAVUTIL_API KeyQueue {
public:
    static constexpr int kCapacity = 6144;

    void Reset() { count_ = read_ = 0; }
    // False when the queue already holds kCapacity entries.
    bool Append(WORD entry) {
        if (count_ >= kCapacity)
            return false;
        entries_[count_++] = entry;
        return true;
    }
    int Count() const { return count_; }
    // The entry at `index`, or 0 (no key) for an index outside 0 .. Count() - 1.
    WORD At(int index) const { return index >= 0 && index < count_ ? entries_[index] : 0; }

    void Rewind() { read_ = 0; }
    // The next unread entry; false when all are read.
    bool Next(WORD& entry) {
        if (read_ >= count_)
            return false;
        entry = entries_[read_++];
        return true;
    }

private:
    WORD entries_[kCapacity] = {};
    int count_ = 0;
    int read_ = 0;
};

// The keys that hold mode pressed and that SendKeys_ReleaseAll will release, in the order pressed.
class TAVUTIL_API HoldList {
public:
    static constexpr int kCapacity = 200;

    bool Contains(WORD code) const {
        for (int i = 0; i < count_; ++i)
            if (codes_[i] == code)
                return true;
        return false;
    }
    // False (and nothing added) when the list is full.
    bool Add(WORD code) {
        if (count_ >= kCapacity)
            return false;
        codes_[count_++] = code;
        return true;
    }
    // Removes and returns the last entry; false when empty.
    bool TakeLast(WORD& code) {
        if (count_ == 0)
            return false;
        code = codes_[--count_];
        return true;
    }
    int Count() const { return count_; }
    // The code at `index`, or 0 (no key) for an index outside 0 .. Count() - 1.
    WORD At(int index) const { return index >= 0 && index < count_ ? codes_[index] : 0; }

private:
    WORD codes_[kCapacity] = {};
    int count_ = 0;
};

// The process-wide instances (defined in KeyState.cpp). Hosts and tests may read them; a test may also
// load the queue by hand to play entries the script language cannot produce.
TAVUTIL_API KeyQueue& TheKeyQueue();
TAVUTIL_API HoldList& TheHoldList();
// True while the player is in hold mode (between '[' and ']', across calls).
TAVUTIL_API bool IsHoldModeOn();

}  // namespace tav::keys
