#include <TavUtil.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

class Subject : public CSubject {};

// Records who updated it and with which subject.
class Recorder : public CObserver {
public:
    Recorder(std::vector<const Recorder*>& log, int id) : log_(log), id_(id) {}
    void Update(CSubject* subject) override {
        log_.push_back(this);
        lastSubject = subject;
    }
    int id() const { return id_; }
    CSubject* lastSubject = nullptr;

private:
    std::vector<const Recorder*>& log_;
    int id_;
};

// Detaches itself from inside its Update.
class OneShot : public CObserver {
public:
    void Update(CSubject* subject) override {
        ++calls;
        subject->Detach(this);
    }
    int calls = 0;
};

// The list is empty again after an observer came and went: the one that left is not called.
TEST(Observer, NotifyOnEmptyListDoesNothing) {
    std::vector<const Recorder*> log;
    Recorder gone(log, 1);
    Subject subject;
    subject.Attach(&gone);
    subject.Detach(&gone);
    subject.Notify(&subject);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(gone.lastSubject, nullptr);
}

TEST(Observer, NotifiesInAttachOrder) {
    std::vector<const Recorder*> log;
    Recorder a(log, 1), b(log, 2), c(log, 3);
    Subject subject;
    subject.Attach(&b);
    subject.Attach(&a);
    subject.Attach(&c);
    subject.Notify(nullptr);
    EXPECT_EQ(log, (std::vector<const Recorder*>{&b, &a, &c}));
}

TEST(Observer, AttachedTwiceIsUpdatedTwiceAndOneDetachLeavesOne) {
    std::vector<const Recorder*> log;
    Recorder a(log, 1), b(log, 2);
    Subject subject;
    subject.Attach(&a);
    subject.Attach(&b);
    subject.Attach(&a);
    subject.Notify(nullptr);
    EXPECT_EQ(log, (std::vector<const Recorder*>{&a, &b, &a}));
    log.clear();
    subject.Detach(&a);  // the first occurrence, from the head
    subject.Notify(nullptr);
    EXPECT_EQ(log, (std::vector<const Recorder*>{&b, &a}));
}

TEST(Observer, DetachOfUnknownObserverChangesNothing) {
    std::vector<const Recorder*> log;
    Recorder a(log, 1), stranger(log, 9);
    Subject subject;
    subject.Attach(&a);
    subject.Detach(&stranger);
    subject.Notify(nullptr);
    EXPECT_EQ(log, (std::vector<const Recorder*>{&a}));
}

TEST(Observer, NullSourcePassesTheSubjectItself) {
    std::vector<const Recorder*> log;
    Recorder a(log, 1);
    Subject subject, other;
    subject.Attach(&a);
    subject.Notify(nullptr);
    EXPECT_EQ(a.lastSubject, &subject);
    subject.Notify(&other);
    EXPECT_EQ(a.lastSubject, &other);
}

TEST(Observer, ObserverMayDetachItselfDuringNotify) {
    std::vector<const Recorder*> log;
    OneShot once;
    Recorder after(log, 2);
    Subject subject;
    subject.Attach(&once);
    subject.Attach(&after);
    subject.Notify(nullptr);
    EXPECT_EQ(once.calls, 1);
    EXPECT_EQ(log.size(), 1u);  // the next observer was still reached
    subject.Notify(nullptr);
    EXPECT_EQ(once.calls, 1);
    EXPECT_EQ(log.size(), 2u);
}

TEST(Observer, SubjectDoesNotOwnItsObservers) {
    std::vector<const Recorder*> log;
    auto* heap = new Recorder(log, 5);
    {
        Subject subject;
        subject.Attach(heap);
    }
    heap->Update(nullptr);  // still alive after the subject is gone
    EXPECT_EQ(log.size(), 1u);
    delete heap;
}

}  // namespace
