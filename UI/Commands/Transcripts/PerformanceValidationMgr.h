#pragma once

#include <memory>

namespace Vu {

class Enabler;
class PerfTestingContext;

/// Holds the measuring state for the lines of a performance transcript. Main thread only.
class PerformanceValidationMgr
{
public:
    static PerformanceValidationMgr* get();

    /// Starts a test named after the transcript being replayed. A running one is abandoned.
    void startPerformanceValidation();
    void endPerformanceValidation();
    /// Null while no test runs.
    PerfTestingContext* performanceTestingContext() const { return m_context.get(); }

private:
    PerformanceValidationMgr();
    ~PerformanceValidationMgr();

    // The enabler must be destroyed last.
    std::unique_ptr<Enabler> m_enabler;
    std::unique_ptr<PerfTestingContext> m_context;
};

} // namespace Vu
