#pragma once

#include <memory>

namespace Vu {

class Enabler;
class PerfTestingContext;

/// Holds what the lines of a performance transcript measure with. Main thread only.
class PerformanceValidationMgr
{
public:
    static PerformanceValidationMgr* get();

    /// Begins a test that is named after the transcript that is replayed. One that runs is given up.
    void startPerformanceValidation();
    void endPerformanceValidation();
    /// Null while no test runs.
    PerfTestingContext* performanceTestingContext() const { return m_context.get(); }

private:
    PerformanceValidationMgr();
    ~PerformanceValidationMgr();

    // The enabler goes last.
    std::unique_ptr<Enabler> m_enabler;
    std::unique_ptr<PerfTestingContext> m_context;
};

} // namespace Vu
