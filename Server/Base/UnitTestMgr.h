#pragma once

namespace Vs {

/// Knows whether the process runs tests, which skip anything that waits for a person.
class UnitTestMgr
{
public:
    static UnitTestMgr* get();

    bool runningTests() const { return m_runningTests; }
    void runningTests(bool running) { m_runningTests = running; }

private:
    UnitTestMgr() = default;
    bool m_runningTests = false;
};

} // namespace Vs
