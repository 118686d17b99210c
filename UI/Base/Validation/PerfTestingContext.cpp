#include "UI/Base/Validation/PerfTestingContext.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Validation/Private/Calibration.h"
#include "UI/Base/Validation/References.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <thread>
#include <unistd.h>

namespace Vu {
namespace {

using Result = PerfReport::Result;

/// The variation from run to run that is no cause for concern.
struct Bounds
{
    double ratio;
    double absolute;
};
constexpr Bounds kTimeBounds = {2.0, 0.005};
constexpr Bounds kMemoryBounds = {1.25, 32e6};

constexpr const wchar_t* kValue = L"value";
constexpr const wchar_t* kProcessor = L"processor";
constexpr const wchar_t* kCalibration = L"calibration";
constexpr const wchar_t* kThreads = L"threads";
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

/// Sets the limits for this machine, whose calibration is so many times that of the reference's. False if the
/// reference doesn't contain it.
bool setLimit(Result& result, const ReferenceValues& values, double slower)
{
    const std::optional<double> value = numberIn(values, kValue);
    if (!value || *value < 0)
        return false;
    const Bounds& bounds = result.isMemory ? kMemoryBounds : kTimeBounds;
    const std::optional<double> ratio = numberIn(values, kRatio);
    const auto limitOf = [&](double reference) {
        return ratio ? reference * *ratio : std::max(reference * bounds.ratio, reference + bounds.absolute);
    };
    result.reference = *value * slower;
    result.limit = limitOf(*result.reference);
    if (const std::optional<double> processor = numberIn(values, kProcessor); processor && *processor > 0)
        result.processorLimit = limitOf(*processor * slower);
    return true;
}

/// Processor time ignores other programs' work, and the clock ignores work spread over more processors. A
/// real slowdown shows in both.
bool isGood(const Result& result)
{
    return result.value <= *result.limit ||
           (result.processorLimit && result.processor > 0 && result.processor <= *result.processorLimit);
}

Result resultOf(std::vector<MetricTime> times, const std::wstring& metric, const std::wstring& description)
{
    Result result{metric, description};
    const auto earlier = [](const MetricTime& one, const MetricTime& other) {
        return one.clock < other.clock;
    };
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end(), earlier);
    result.value = middle->clock;
    result.processor = middle->processor;
    result.worst = std::max_element(times.begin(), times.end(), earlier)->clock;
    result.count = times.size();
    return result;
}

/// The number of threads that did the work, at least in part.
unsigned threadsOf(const Result& result)
{
    const double most = std::max(1u, std::thread::hardware_concurrency());
    const double used = result.value > 0 ? std::ceil(result.processor / result.value - 0.25) : 1;
    return static_cast<unsigned>(std::clamp(used, 1.0, most));
}

bool fail(const std::wstring& message)
{
    lastError = message;
    if (onFailure)
        onFailure(message);
    return false;
}

void keep(Result& result, References& references, const std::wstring& name, double calibrationBefore)
{
    ReferenceValues values{{kValue, result.value}};
    if (!result.isMemory) {
        const unsigned threads = threadsOf(result);
        const double now = calibrationSeconds(threads);
        values[kCalibration] = threads == 1 ? std::min(calibrationBefore, now) : now;
        values[kThreads] = static_cast<double>(threads);
        if (result.processor > 0)
            values[kProcessor] = result.processor;
    }
    references.store(name, values);
    result.outcome = PerfReport::Outcome::Kept;
}

/// How many times slower this machine is than the reference's. A burst of other work may occur between the
/// start of the test and now, so the more lenient calibration is used. Nothing if the reference has no
/// calibration.
std::optional<double> slowerThan(const ReferenceValues& reference, double calibrationBefore)
{
    const std::optional<double> then = numberIn(reference, kCalibration);
    if (!then || *then <= 0)
        return std::nullopt;
    const double most = std::max(1u, std::thread::hardware_concurrency());
    const double threads = std::clamp(numberIn(reference, kThreads).value_or(1), 1.0, most);
    return std::max(calibrationBefore, calibrationSeconds(static_cast<unsigned>(threads))) / *then;
}

bool compareWith(Result& result, References& references, const std::wstring& name, double calibrationBefore)
{
    const std::optional<ReferenceValues> kept = references.find(name);
    if (!kept) {
        keep(result, references, name, calibrationBefore);
        return true;
    }
    const std::optional<double> slower =
        result.isMemory ? std::optional(1.0) : slowerThan(*kept, calibrationBefore);
    if (!slower || !setLimit(result, *kept, *slower))
        throw Vs::Exception(localizedFormat("PerfNoReference",
                                            "%1%: \"%2%\" lacks its value or its calibration.",
                                            references.file().wstring(), name));
    if (isGood(result))
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
    std::vector<MetricTime> times = probe.mapped()->times();
    if (times.empty())
        return fail(localizedFormat("PerfNothing",
                                    "Nothing that the metric %1% measures has happened since it was started.",
                                    metric));
    const std::wstring kind = probe.mapped()->windowless() ? L" windowless" : L"";
    return compare(resultOf(std::move(times), metric, description), kind);
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
    bool good = false;
    try {
        References references(L"performance", m_testName);
        good =
            compareWith(result, references, result.metric + kind + L' ' + result.description, m_calibration);
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
