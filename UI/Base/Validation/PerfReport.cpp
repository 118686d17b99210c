#include "UI/Base/Validation/PerfReport.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Validation/MetricProbe.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <boost/format.hpp>

#include <cmath>

namespace Vu {
namespace {

constexpr double kMegabyte = 1e6;

std::wstring outcomeText(PerfReport::Outcome outcome)
{
    switch (outcome) {
    case PerfReport::Outcome::Kept:
        return localized("PerfKept", "kept as the reference");
    case PerfReport::Outcome::Passed:
        return localized("PerfPassed", "passed");
    case PerfReport::Outcome::Failed:
        break;
    }
    return localized("PerfFailed", "failed");
}

const char* outcomeName(PerfReport::Outcome outcome)
{
    constexpr const char* kNames[] = {"kept", "passed", "failed"};
    return kNames[size_t(outcome)];
}

/// Metrics that users measure in frames per second.
bool isRate(const PerfReport::Result& result)
{
    return result.metric == kMetricTokens[size_t(EMetricType::FramesRate)] && result.value > 0;
}

std::wstring lineOf(const PerfReport::Result& result)
{
    std::wstring line =
        result.metric + L" \"" + result.description + L"\": " + perfText(result.value, result.isMemory);
    if (isRate(result))
        line += localizedFormat("PerfRate", ", %1% pictures a second", std::lround(1 / result.value));
    if (result.count > 1)
        line += localizedFormat("PerfMany", " (the middle of %1%, the worst %2%)", result.count,
                                perfText(result.worst, result.isMemory));
    if (result.reference && result.limit)
        line += localizedFormat("PerfReference", ", reference %1%, limit %2%",
                                perfText(*result.reference, result.isMemory),
                                perfText(*result.limit, result.isMemory));
    if (result.processor > 0)
        line += localizedFormat("PerfProcessor", ", processor time %1%", perfText(result.processor, false));
    return line + L": " + outcomeText(result.outcome);
}

QString qt(const std::wstring& text)
{
    return QString::fromStdWString(text);
}

QJsonObject jsonOf(const PerfReport::Result& result)
{
    QJsonObject object{{"metric", qt(result.metric)},
                       {"description", qt(result.description)},
                       {"unit", result.isMemory ? "bytes" : "seconds"},
                       {"value", result.value},
                       {"worst", result.worst},
                       {"count", static_cast<qint64>(result.count)},
                       {"outcome", outcomeName(result.outcome)}};
    if (isRate(result))
        object.insert("perSecond", 1 / result.value);
    if (result.reference)
        object.insert("reference", *result.reference);
    if (result.limit)
        object.insert("limit", *result.limit);
    if (result.processor > 0)
        object.insert("processor", result.processor);
    if (result.processorLimit)
        object.insert("processorLimit", *result.processorLimit);
    return object;
}

} // namespace

std::wstring perfText(double value, bool isMemory)
{
    if (isMemory)
        return (boost::wformat(L"%.4g MB") % (value / kMegabyte)).str();
    return value < 1 ? (boost::wformat(L"%.3g ms") % (value * 1e3)).str()
                     : (boost::wformat(L"%.4g s") % value).str();
}

std::wstring PerfReport::text() const
{
    std::wstring text =
        localizedFormat("PerfTest", "Performance of \"%1%\", on a machine whose calibration took %2%", test,
                        perfText(calibration, false));
    for (const Result& result : results)
        text += L'\n' + lineOf(result);
    return text;
}

std::string PerfReport::json() const
{
    QJsonArray array;
    for (const Result& result : results)
        array.append(jsonOf(result));
    return QJsonDocument(QJsonObject{{"test", qt(test)}, {"calibration", calibration}, {"results", array}})
        .toJson()
        .toStdString();
}

} // namespace Vu
