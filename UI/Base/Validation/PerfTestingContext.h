#pragma once

#include "UI/Base/Validation/MetricProbe.h"
#include "UI/Base/Validation/PerfReport.h"

#include <functional>
#include <map>
#include <string>

namespace Vu {

/// Measures the program's behaviour in use, and compares it with references of the kind "performance"
/// (References), which a metric and a description select together. Main thread only.
///
/// Times are compared as multiples of a calibration run, which is made at the start and again before each
/// comparison, then on as many threads as the work took: what is slower only because the machine is slower,
/// or busier, passes. A time fails if it is more than twice its reference plus a few milliseconds, both by
/// the clock and by the processor time of the process and its children; memory if it is more than a quarter
/// above plus some megabytes. A number `ratio` added by hand to a reference in the file replaces the factor
/// of two or of one and a quarter. Metrics of frames drawn without a window have separate references.
class PerfTestingContext
{
public:
    /// `testName` names the file of the references; empty for the one that References finds.
    explicit PerfTestingContext(const std::string& testName);
    ~PerfTestingContext();
    PerfTestingContext(const PerfTestingContext&) = delete;
    PerfTestingContext& operator=(const PerfTestingContext&) = delete;

    /// Starts measuring the metric, restarting it if it is running.
    void startMetric(EMetricType type);
    /// Ends the metric. True if it is as good as its reference, or becomes the reference. False, with an
    /// errorMessage, if it is worse, was never started or found nothing to measure, or if the references
    /// can't be used.
    [[nodiscard]] bool validate(EMetricType type, const std::wstring& description);
    /// The same for the memory of the process: resident with `physical`, else virtual.
    [[nodiscard]] bool validateMemory(bool physical, const std::wstring& description);

    /// Why the last validation failed; empty if it didn't.
    static std::wstring errorMessage();
    /// Called for each failed validation, with its errorMessage: a run whose values are too large must not
    /// pass, although no line ends with status 1 for it. An empty function for nobody.
    static void failureHandler(std::function<void(const std::wstring&)> handler);
    /// The results of the present context, or of the last one.
    static const PerfReport& report();

    /// Whether performance is being tested; see Enabler.
    static bool m_bEnabled;

private:
    bool compare(PerfReport::Result result, const std::wstring& kind);

    const std::wstring m_testName;
    const double m_calibration;
    std::map<EMetricType, std::unique_ptr<MetricProbe>> m_probes;
};

/// While this exists, performance is tested, and all contexts share a report.
class Enabler
{
public:
    /// Starts a report with that name.
    explicit Enabler(const std::wstring& testName);
    ~Enabler();
    Enabler(const Enabler&) = delete;
    Enabler& operator=(const Enabler&) = delete;
};

} // namespace Vu
