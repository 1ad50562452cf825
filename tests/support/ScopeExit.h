// Runs a callable when the scope ends: the tests' one-off clean-ups (a window, a value) that have no owner type.
#pragma once

#include <utility>

namespace tavtest {

template <typename F> class ScopeExit {
public:
    explicit ScopeExit(F f) : f_(std::move(f)) {}
    ~ScopeExit() { f_(); }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;

private:
    F f_;
};

}  // namespace tavtest
