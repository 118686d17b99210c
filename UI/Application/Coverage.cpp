#include "UI/Application/Coverage.h"

#include "Server/Base/Exception.h"
#include "Server/Base/LineCoverage.h"
#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/CommandObserver.h"
#include "UI/Base/Command/Info.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <boost/filesystem/fstream.hpp>

namespace Quillet {

namespace {

/// The beginning of a line of the file.
std::string keyOf(const char* kind, const std::wstring& name)
{
    const QByteArray object = QJsonDocument(QJsonObject{{QLatin1String(kind), QString::fromStdWString(name)}})
                                  .toJson(QJsonDocument::Compact);
    return object.chopped(1).toStdString() + ",\"runs\":";
}

class Counter : public Vu::ICommandObserver
{
public:
    Coverage::Runs runs;

private:
    void before(const Vu::CommandRun& run) override { ++runs[keyOf("definition", run.definition->id())]; }
};

Counter& counter()
{
    // Commands may run until the process ends.
    static auto* const counter = new Counter;
    return *counter;
}

} // namespace

void Coverage::begin()
{
    Vs::LineCoverage::begin();
    Vu::CommandMgr::addObserver(&counter());
}

void Coverage::write(const std::string& file)
{
    Runs runs = counter().runs;
    for (const Vs::TextCommandSubjectArea* area : Vs::TextCommandMgr::get()->areas())
        for (const Vs::TextCommand* command : Vs::TextCommandMgr::get()->commands(area->name()))
            runs[keyOf("line", area->name() + L'.' + command->name())];
    for (const auto& [line, count] : Vs::LineCoverage::counts())
        runs[keyOf("line", line)] += count;
    for (const Vu::CommandDefinition* definition : Vu::CommandDefinitionMgr::get()->commandDefinitions())
        runs[keyOf("definition", definition->id())];
    write(file, runs);
}

void Coverage::add(const std::string& file, Runs& runs)
{
    boost::filesystem::ifstream stream{boost::filesystem::path(file)};
    for (std::string line; std::getline(stream, line);)
        if (const size_t end = line.rfind(':'); end != std::string::npos)
            runs[line.substr(0, end + 1)] += std::strtoull(line.c_str() + end + 1, nullptr, 10);
}

void Coverage::write(const std::string& file, const Runs& runs)
{
    boost::filesystem::ofstream stream{boost::filesystem::path(file)};
    for (const auto& [key, count] : runs)
        stream << key << count << "}\n";
    if (!stream.flush())
        throw Vs::Exception(file + ": The coverage cannot be written.");
}

} // namespace Quillet
