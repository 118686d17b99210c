#pragma once

#include "UI/Base/Validation/MetricProbe.h"
#include "UI/Base/Validation/PerfReport.h"

#include <functional>
#include <map>
#include <string>

namespace Vu {

/// Measures how the program behaves while it is used, and compares with references of the kind "performance"
/// (References), which a metric and a description select together. Main thread only.
///
/// Times are compared as multiples of a calibration run, which is made at the start and again before each
/// comparison, then on as many threads as the work took: what is slower because the machine is slower, or
/// busier, passes. A time fails when it is more than twice its reference and a few milliseconds, both by the
/// clock and by the processor time of the process and its children; memory when it is more than a quarter
/// above and some megabytes. A number `ratio` that a person adds to a reference in the file replaces the two
/// or the one and a quarter. Metrics of pictures that were drawn without a window have references of their
/// own.
class PerfTestingContext
{
public:
    /// `testName` names the file of the references; empty for what References finds.
    explicit PerfTestingContext(const std::string& testName);
    ~PerfTestingContext();
    PerfTestingContext(const PerfTestingContext&) = delete;
    PerfTestingContext& operator=(const PerfTestingContext&) = delete;

    /// From here on the metric is measured; one that runs begins anew.
    void startMetric(EMetricType type);
    /// Ends the metric. True if it is as good as its reference, or becomes it. False, with an errorMessage,
    /// if it is worse, was never started or found nothing to measure, or if the references cannot be used.
    [[nodiscard]] bool validate(EMetricType type, const std::wstring& description);
    /// The same for the memory that the process has in the machine (`physical`), or has asked for.
    [[nodiscard]] bool validateMemory(bool physical, const std::wstring& description);

    /// Why the last validation failed; empty if it didn't.
    static std::wstring errorMessage();
    /// Called for each validation that fails, with its errorMessage: a run whose values are too large must
    /// not pass, though no line ends with status 1 for it. An empty function for nobody.
    static void failureHandler(std::function<void(const std::wstring&)> handler);
    /// What the present context has found, or the last one did.
    static const PerfReport& report();

    /// Whether performance is tested; see Enabler.
    static bool m_bEnabled;

private:
    bool compare(PerfReport::Result result, const std::wstring& kind);

    const std::wstring m_testName;
    const double m_calibration;
    std::map<EMetricType, std::unique_ptr<MetricProbe>> m_probes;
};

/// While this exists, performance is tested, and all contexts report together.
class Enabler
{
public:
    /// Begins a report of that name.
    explicit Enabler(const std::wstring& testName);
    ~Enabler();
    Enabler(const Enabler&) = delete;
    Enabler& operator=(const Enabler&) = delete;
};

} // namespace Vu
