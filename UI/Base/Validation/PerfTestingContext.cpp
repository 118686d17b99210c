#include "UI/Base/Validation/PerfTestingContext.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Validation/Private/Calibration.h"
#include "UI/Base/Validation/References.h"

#include <algorithm>
#include <fstream>
#include <unistd.h>

namespace Vu {
namespace {

using Result = PerfReport::Result;

/// What may vary from run to run without anything being wrong.
struct Bounds
{
    double ratio;
    double absolute;
};
constexpr Bounds kTimeBounds = {2.0, 0.005};
constexpr Bounds kMemoryBounds = {1.25, 32e6};

constexpr const wchar_t* kValue = L"value";
constexpr const wchar_t* kCalibration = L"calibration";
constexpr const wchar_t* kRatio = L"ratio";

PerfReport lastReport;
std::wstring lastError;
std::function<void(const std::wstring&)> onFailure;

double memoryBytes(bool physical)
{
    size_t total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return static_cast<double>(physical ? resident : total) * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

std::optional<double> numberIn(const ReferenceValues& values, const wchar_t* name)
{
    const auto found = values.find(name);
    const double* number = found == values.end() ? nullptr : std::get_if<double>(&found->second);
    return number ? std::optional(*number) : std::nullopt;
}

/// Sets what this machine would have to reach. False if the reference doesn't say it.
bool setLimit(Result& result, const ReferenceValues& values, double calibration)
{
    const std::optional<double> value = numberIn(values, kValue);
    const std::optional<double> then = result.isMemory ? 1.0 : numberIn(values, kCalibration);
    if (!value || !then || *value < 0 || *then <= 0)
        return false;
    const Bounds& bounds = result.isMemory ? kMemoryBounds : kTimeBounds;
    const double reference = result.isMemory ? *value : *value * calibration / *then;
    const std::optional<double> ratio = numberIn(values, kRatio);
    result.reference = reference;
    result.limit =
        ratio ? reference * *ratio : std::max(reference * bounds.ratio, reference + bounds.absolute);
    return true;
}

Result resultOf(std::vector<double> seconds, const std::wstring& metric, const std::wstring& description)
{
    Result result{metric, description};
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::nth_element(seconds.begin(), middle, seconds.end());
    result.value = *middle;
    result.worst = *std::max_element(seconds.begin(), seconds.end());
    result.count = seconds.size();
    return result;
}

bool fail(const std::wstring& message)
{
    lastError = message;
    if (onFailure)
        onFailure(message);
    return false;
}

/// What the calibration took at the start of the test, and takes now. A burst of other work on the machine
/// may lie between the two, so the one is taken that lets more pass.
struct Calibration
{
    double start, now;
};

bool compareWith(Result& result, References& references, const std::wstring& name,
                 const Calibration& calibration)
{
    const std::optional<ReferenceValues> kept = references.find(name);
    if (!kept) {
        ReferenceValues values{{kValue, result.value}};
        if (!result.isMemory)
            values[kCalibration] = std::min(calibration.start, calibration.now);
        references.store(name, values);
        result.outcome = PerfReport::Outcome::Kept;
        return true;
    }
    if (!setLimit(result, *kept, std::max(calibration.start, calibration.now)))
        throw Vs::Exception(localizedFormat("PerfNoReference",
                                            "%1%: \"%2%\" lacks its value or its calibration.",
                                            references.file().wstring(), name));
    if (result.value <= *result.limit)
        return true;
    result.outcome = PerfReport::Outcome::Failed;
    return fail(localizedFormat(
        "PerfTooMuch",
        "%1% \"%2%\" is %3%, with a reference of %4% and a limit of %5%. The reference is in %6%.",
        result.metric, result.description, perfText(result.value, result.isMemory),
        perfText(*result.reference, result.isMemory), perfText(*result.limit, result.isMemory),
        references.file().wstring()));
}

} // namespace

bool PerfTestingContext::m_bEnabled = false;

PerfTestingContext::PerfTestingContext(const std::string& testName)
    : m_testName(Vs::Strings::widen(testName)), m_calibration(calibrationSeconds())
{
    Vs::assertMainThread();
    if (!m_bEnabled)
        lastReport = {m_testName};
    lastReport.calibration = m_calibration;
    lastError.clear();
}

PerfTestingContext::~PerfTestingContext() = default;

void PerfTestingContext::startMetric(EMetricType type)
{
    m_probes.erase(type);
    m_probes.emplace(type, MetricProbe::make(type));
}

bool PerfTestingContext::validate(EMetricType type, const std::wstring& description)
{
    const std::wstring metric = kMetricTokens[size_t(type)];
    const auto probe = m_probes.extract(type);
    if (!probe)
        return fail(localizedFormat("PerfNotStarted", "The metric %1% was not started.", metric));
    std::vector<double> seconds = probe.mapped()->seconds();
    if (seconds.empty())
        return fail(localizedFormat(
            "PerfNothing", "Since the metric %1% was started there was nothing that it measures.", metric));
    const std::wstring kind = probe.mapped()->windowless() ? L" windowless" : L"";
    return compare(resultOf(std::move(seconds), metric, description), kind);
}

bool PerfTestingContext::validateMemory(bool physical, const std::wstring& description)
{
    Result result{physical ? L"PhysicalMemory" : L"VirtualMemory", description, true};
    result.value = result.worst = memoryBytes(physical);
    return compare(std::move(result), {});
}

bool PerfTestingContext::compare(Result result, const std::wstring& kind)
{
    lastError.clear();
    const Calibration calibration{m_calibration, result.isMemory ? m_calibration : calibrationSeconds()};
    bool good = false;
    try {
        References references(L"performance", m_testName);
        good = compareWith(result, references, result.metric + kind + L' ' + result.description, calibration);
    } catch (const Vs::Exception& error) {
        result.outcome = PerfReport::Outcome::Failed;
        fail(error.message());
    }
    lastReport.results.push_back(std::move(result));
    return good;
}

std::wstring PerfTestingContext::errorMessage()
{
    return lastError;
}

void PerfTestingContext::failureHandler(std::function<void(const std::wstring&)> handler)
{
    onFailure = std::move(handler);
}

const PerfReport& PerfTestingContext::report()
{
    return lastReport;
}

Enabler::Enabler(const std::wstring& testName)
{
    PerfTestingContext::m_bEnabled = true;
    lastReport = {testName};
}

Enabler::~Enabler()
{
    PerfTestingContext::m_bEnabled = false;
}

} // namespace Vu
