#include "Server/DataModel/Recovery/Private/StepJournal.h"

#include "Server/DataModel/Native/FileCalls.h"
#include "Server/DataModel/Recovery/Private/FolderCalls.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>

namespace Vs::Recovery {

namespace fs = std::filesystem;
using Native::FileCalls;

namespace {

constexpr std::string_view kName = "steps-";

std::string fileOf(const std::string& folder, unsigned number)
{
    return folder + '/' + std::string(kName) + std::to_string(number);
}

QByteArray textOf(const StepJournal::Step& step)
{
    QJsonArray digests;
    for (const std::string& digest : step.digests)
        digests.append(QString::fromStdString(digest));
    const QJsonObject object{{"line", QString::fromStdWString(step.line)}, {"digests", digests}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

StepJournal::Step stepOf(const std::string& text)
{
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    StepJournal::Step step;
    step.line = object["line"].toString().toStdWString();
    for (const QJsonValue digest : object["digests"].toArray())
        step.digests.push_back(digest.toString().toStdString());
    return step;
}

} // namespace

bool StepJournal::append(const std::string& folder, unsigned number, const Step& step)
{
    FileCalls& calls = FileCalls::current();
    const int file = calls.open(fileOf(folder, number).c_str(),
                                O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0)
        return false;
    const QByteArray text = textOf(step);
    const bool whole = calls.write(file, text.data(), static_cast<size_t>(text.size())) == text.size();
    calls.close(file);
    return whole;
}

std::vector<StepJournal::Step> StepJournal::read(const std::string& folder, unsigned first)
{
    std::vector<Step> steps;
    std::error_code error;
    for (unsigned number = first; fs::is_regular_file(fs::symlink_status(fileOf(folder, number), error));
         ++number) {
        std::ifstream file(fileOf(folder, number));
        for (std::string text; std::getline(file, text);) {
            Step step = stepOf(text);
            if (step.line.empty() || step.digests.empty())
                return steps;
            steps.push_back(std::move(step));
        }
    }
    return steps;
}

void StepJournal::removeBefore(const std::string& folder, unsigned number)
{
    std::error_code error;
    std::vector<std::string> old;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (const std::string name = entry->path().filename().string();
            isJournal(name) && std::strtoul(name.c_str() + kName.size(), nullptr, 10) < number)
            old.push_back(entry->path().string());
    for (const std::string& file : old)
        FolderCalls::remove(file);
}

bool StepJournal::isJournal(const std::string& fileName)
{
    return fileName.starts_with(kName);
}

} // namespace Vs::Recovery
