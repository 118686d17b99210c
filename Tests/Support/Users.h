#pragma once

#include <functional>

namespace TestSupport {

/// Users that nobody is and whom nothing belongs to.
constexpr unsigned kSomebody = 65534;
constexpr unsigned kAnother = 65533;

/// What the function answers in a process of its own that belongs to that user and to no group but the one of
/// the same number. False as well if it throws or crashes, or if the process may not change its user.
bool asUser(unsigned user, const std::function<bool()>& function);

/// Whether the tests are root's, who alone may be others.
bool mayBeOthers();

} // namespace TestSupport

/// Leaves the running test, as skipped and with a notice, where it can't be another user.
#define SKIP_UNLESS_ROOT()                                                                                   \
    if (!TestSupport::mayBeOthers())                                                                         \
    GTEST_SKIP() << "NOTICE: only root can try what other users may do"
