#pragma once

#include <QTest>

#include <utility>

namespace UiTests {

/// Processes events until the condition holds; false if it never does. A sound test doesn't wait for long,
/// but on a busy machine it may wait for its processor.
template <class Condition>
bool becomes(Condition&& condition)
{
    constexpr int kMilliseconds = 60'000;
    return QTest::qWaitFor(std::forward<Condition>(condition), kMilliseconds);
}

} // namespace UiTests
