#include "UI/Application/Testing/TestHistory.h"

#include "Server/Base/Exception.h"
#include "Server/Base/JsonFile.h"
#include "UI/Application/Testing/TestReport.h"

#include <QJsonObject>

#include <algorithm>

namespace Quillet {
namespace {

constexpr const char* kFormat = "format";
constexpr const char* kTests = "tests";
constexpr const char* kFailed = "failed";
constexpr const char* kSeconds = "seconds";

} // namespace

TestHistory::TestHistory(const boost::filesystem::path& file) : m_file(file)
{
    if (file.empty())
        return;
    const std::optional<QJsonObject> content = Vs::JsonFile::read(file);
    if (!content)
        return;
    if (content->value(QLatin1String(kFormat)).toInt() != 1 ||
        !content->value(QLatin1String(kTests)).isObject())
        throw Vs::Exception(file.string() + ": This is not a file of results of test runs.");
    const QJsonObject tests = content->value(QLatin1String(kTests)).toObject();
    std::vector<double> times;
    for (auto test = tests.begin(); test != tests.end(); ++test) {
        const QJsonObject entry = test->toObject();
        const double seconds = entry.value(QLatin1String(kSeconds)).toDouble();
        m_entries[test.key().toStdString()] = {entry.value(QLatin1String(kFailed)).toBool(), seconds};
        times.push_back(seconds);
    }
    std::sort(times.begin(), times.end());
    if (!times.empty())
        m_usual = times[times.size() / 2];
}

bool TestHistory::failed(const std::string& name) const
{
    const auto found = m_entries.find(name);
    return found != m_entries.end() && found->second.failed;
}

double TestHistory::seconds(const std::string& name) const
{
    const auto found = m_entries.find(name);
    return found == m_entries.end() ? m_usual : found->second.seconds;
}

void TestHistory::write(const std::vector<TestCase>& cases)
{
    if (m_file.empty())
        return;
    for (const TestCase& test : cases)
        m_entries[test.name] = {test.result.kind != TestResult::Kind::Passed, test.result.seconds};
    QJsonObject tests;
    for (const auto& [name, entry] : m_entries)
        tests.insert(QString::fromStdString(name), QJsonObject{{QLatin1String(kFailed), entry.failed},
                                                               {QLatin1String(kSeconds), entry.seconds}});
    Vs::JsonFile::write(m_file, QJsonObject{{QLatin1String(kFormat), 1}, {QLatin1String(kTests), tests}},
                        Vs::JsonFile::Readers::Everybody);
}

} // namespace Quillet
