#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Validation/PerfTestingContext.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Transcripts/PerformanceValidationMgr.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/filesystem/fstream.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Performance";

// clang-format off
constexpr DirectTextRow kStart          = {kArea, L"StartPerformanceValidation", L"Start performance validation.", "", false};
constexpr DirectTextRow kEnd            = {kArea, L"EndPerformanceValidation",   L"End performance validation.", "", false};
constexpr DirectTextRow kStartMetric    = {kArea, L"StartMetric",    L"Start metric, <type>: FramesRate, CommandInteractivity, PrehighlightSelect, PrehighlightInteractivity, ElapsedTime", "%s", false};
constexpr DirectTextRow kValidate       = {kArea, L"Validate",       L"Validate metric, <type>: FramesRate, CommandInteractivity, PrehighlightSelect, PrehighlightInteractivity, ElapsedTime, <description>: metric description", "%s%s", false};
constexpr DirectTextRow kValidateMemory = {kArea, L"ValidateMemory", L"Validate memory, [/physical]: physical memory, [/virtual]: virtual memory, <description>: metric description.", "%s", false};
constexpr DirectTextRow kReport         = {kArea, L"Report",         L"[<filename>] [/Json] Shows what the last performance validation found, or writes it to the file, as JSON if its name ends in .json", "%s", false};
// clang-format on

std::optional<EMetricType> metricOf(const TextCommandParameters& parameters)
{
    if (parameters.parameters() == 0)
        return std::nullopt;
    const auto token = std::find(kMetricTokens.begin(), kMetricTokens.end(), parameters[0]);
    if (token == kMetricTokens.end())
        return std::nullopt;
    return EMetricType(token - kMetricTokens.begin());
}

std::wstring descriptionIn(const TextCommandParameters& parameters, unsigned index)
{
    return index < parameters.parameters() ? parameters[index] : std::wstring();
}

PerfTestingContext* context()
{
    return PerformanceValidationMgr::get()->performanceTestingContext();
}

TextCommandResult notStarted()
{
    return {1, L"The performance validation has not been started."};
}

class TextCmdPerformanceStartPerformanceValidation : public DirectTextCommand<kStart>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        PerformanceValidationMgr::get()->startPerformanceValidation();
        return {0, L"Start performance validation"};
    }
};

class TextCmdPerformanceEndPerformanceValidation : public DirectTextCommand<kEnd>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        PerformanceValidationMgr::get()->endPerformanceValidation();
        return {0, L"End performance validation"};
    }
};

/// A command whose first parameter is a type of metric; a wrong type is told before that nothing is tested.
template <const DirectTextRow& kRow>
class MetricTextCommand : public DirectTextCommand<kRow>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) final
    {
        const std::optional<EMetricType> type = metricOf(parameters);
        if (!type)
            return {1, L"The metric type is not a valid one"};
        if (!context())
            return notStarted();
        return executeMetric(*context(), *type, parameters);
    }

protected:
    virtual TextCommandResult executeMetric(PerfTestingContext& context, EMetricType type,
                                            const TextCommandParameters& parameters) = 0;
};

class TextCmdPerformanceStartMetric : public MetricTextCommand<kStartMetric>
{
    TextCommandResult executeMetric(PerfTestingContext& context, EMetricType type,
                                    const TextCommandParameters& parameters) override
    {
        context.startMetric(type);
        return {0, L"Start " + parameters[0] + L" metric"};
    }
};

/// A value that is worse than its reference is told by the message alone: the test goes on to its end.
class TextCmdPerformanceValidate : public MetricTextCommand<kValidate>
{
    TextCommandResult executeMetric(PerfTestingContext& context, EMetricType type,
                                    const TextCommandParameters& parameters) override
    {
        if (!context.validate(type, descriptionIn(parameters, 1)))
            return {0, L"Fail to validate " + parameters[0] + L" metric\r\n" +
                           PerfTestingContext::errorMessage()};
        return {0, L"Success to validate " + parameters[0] + L" metric"};
    }
};

class TextCmdPerformanceValidateMemory : public DirectTextCommand<kValidateMemory>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (!context())
            return notStarted();
        if (!context()->validateMemory(parameters.hasFlag(L"physical"), descriptionIn(parameters, 0)))
            return {0, L"Fail to validate memory metric"};
        return {0, L"Success to validate memory metric"};
    }
};

class TextCmdPerformanceReport : public DirectTextCommand<kReport>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const PerfReport& report = PerfTestingContext::report();
        if (parameters.parameters() == 0)
            return {0, parameters.hasFlag(L"Json") ? Vs::Strings::widen(report.json()) : report.text()};
        const std::wstring file = Vs::TranscriptMgr::get()->locate(parameters[0]);
        const bool json = parameters.hasFlag(L"Json") || boost::algorithm::iends_with(file, L".json");
        errno = 0;
        boost::filesystem::ofstream stream{boost::filesystem::path(file), std::ios::binary};
        stream << (json ? report.json() : Vs::Strings::narrow(report.text()) + '\n') << std::flush;
        if (stream)
            return {0, {}};
        return {1, localizedFormat("PerfReportFailed", "The report %1% cannot be written: %2%", file,
                                   Vs::Strings::widen(std::strerror(errno)))};
    }
};

TextCmdPerformanceStartPerformanceValidation theStart;
TextCmdPerformanceEndPerformanceValidation theEnd;
TextCmdPerformanceStartMetric theStartMetric;
TextCmdPerformanceValidate theValidate;
TextCmdPerformanceValidateMemory theValidateMemory;
TextCmdPerformanceReport theReport;

} // namespace
} // namespace Vu::Commands
