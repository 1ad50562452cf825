// The other program of the clipboard drivers lives as long as orders come: a range of the long pass gives it
// orders for far longer than its idle time, and one that ended mid-range failed every input after. Left
// without orders, it ends by itself.
#include "Peer.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace fuzz {
namespace {

constexpr DWORD kIdleMs = 1500;

// An order of no items: the peer empties the clipboard and answers 'k'.
bool EmptyOrder(Peer& peer) {
    const uint32_t count = 0;
    char answer = 0;
    return peer.Write(&count, sizeof count) && peer.Read(&answer, 1, 10000) && answer == 'k';
}

TEST(FuzzPeer, OrdersKeepItBeyondItsIdleTime) {
    Peer peer;
    ASSERT_TRUE(peer.Start(PeerProgram(), L"clipboard idle=1500"));
    const ULONGLONG until = GetTickCount64() + 3 * kIdleMs;
    while (GetTickCount64() < until) {
        ASSERT_TRUE(EmptyOrder(peer)) << "the peer stopped answering while orders came";
        Sleep(kIdleMs / 5);
    }
    EXPECT_NE(WAIT_OBJECT_0, WaitForSingleObject(peer.process(), 0));
}

TEST(FuzzPeer, EndsWhenNoOrderComes) {
    Peer peer;
    ASSERT_TRUE(peer.Start(PeerProgram(), L"clipboard idle=1500"));
    ASSERT_TRUE(EmptyOrder(peer));
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(peer.process(), 60000)) << "the peer outlived its idle time";
}

}  // namespace
}  // namespace fuzz
