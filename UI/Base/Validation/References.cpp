#include "UI/Base/Validation/References.h"

#include "Server/Base/Exception.h"
#include "Server/Base/JsonFile.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"

#include <QJsonObject>

#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vu {

namespace fs = boost::filesystem;

namespace {

constexpr const char* kFormat = "format";
constexpr const char* kReferences = "references";
/// Of the layout described at readAll.
constexpr int kNewestFormat = 1;

References::Mode currentMode = References::Mode::Fill;

/// The one being replayed, or else recorded; empty without either.
fs::path transcript()
{
    const Vs::TranscriptMgr* manager = Vs::TranscriptMgr::get();
    return fs::path(manager->replaying() ? manager->replayingScriptFile() : manager->recordingFile());
}

std::wstring documentName()
{
    DocumentSession* session = SessionMgr::get()->activeDocumentSession();
    return session && session->document() ? session->document()->displayName() : std::wstring();
}

/// A document's display name need not be a valid file name.
std::wstring fileNameOf(std::wstring name)
{
    std::replace(name.begin(), name.end(), L'/', L'_');
    return name.empty() ? L"quillet" : name;
}

QString qt(const std::wstring& text)
{
    return QString::fromStdWString(text);
}

[[noreturn]] void wrong(const std::wstring& complaint)
{
    throw Vs::Exception(localizedFormat(
        "ReferencesWrong", "%1%. Repair the file, or remove it to have it created again.", complaint));
}

[[noreturn]] void wrong(const fs::path& file, const std::wstring& what)
{
    wrong(file.wstring() + L": " + what);
}

ReferenceValues readValues(const fs::path& file, const QString& name, const QJsonValue& entry)
{
    ReferenceValues values;
    if (!entry.isObject())
        wrong(file, localizedFormat("ReferenceNoObject", "\"%1%\" is not an object of values",
                                    name.toStdWString()));
    const QJsonObject object = entry.toObject();
    for (auto value = object.begin(); value != object.end(); ++value)
        if (value->isDouble())
            values[value.key().toStdWString()] = value->toDouble();
        else if (value->isString())
            values[value.key().toStdWString()] = value->toString().toStdWString();
        else
            wrong(file,
                  localizedFormat("ReferenceNoValue", "\"%1%\" of \"%2%\" is neither a number nor a text",
                                  value.key().toStdWString(), name.toStdWString()));
    return values;
}

/// `{"format": 1, "references": {NAME: {VALUE: number or text, ...}, ...}}`
std::map<std::wstring, ReferenceValues> readAll(const fs::path& file)
{
    std::map<std::wstring, ReferenceValues> references;
    std::optional<QJsonObject> content;
    try {
        content = Vs::JsonFile::read(file);
    } catch (const Vs::Exception& error) {
        wrong(error.message());
    }
    if (!content)
        return references;
    const int format = content->value(QLatin1String(kFormat)).toInt();
    const QJsonValue entries = content->value(QLatin1String(kReferences));
    if (format < 1 || !entries.isObject())
        wrong(file, localized("ReferencesOther", "this is not a file of references"));
    if (format > kNewestFormat)
        wrong(file, localized("ReferencesNewer", "a later version of the program wrote it"));
    const QJsonObject object = entries.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry)
        references[entry.key().toStdWString()] = readValues(file, entry.key(), *entry);
    return references;
}

QJsonObject jsonOf(const ReferenceValues& values)
{
    QJsonObject object;
    for (const auto& [name, value] : values)
        if (const double* number = std::get_if<double>(&value))
            object.insert(qt(name), *number);
        else
            object.insert(qt(name), qt(std::get<std::wstring>(value)));
    return object;
}

} // namespace

References::Mode References::mode()
{
    return currentMode;
}

void References::mode(Mode mode)
{
    currentMode = mode;
}

fs::path References::currentFile(const std::wstring& kind, const std::wstring& testName)
{
    const fs::path script = transcript();
    const fs::path folder =
        script.empty() ? fs::current_path() : Vs::PathInfo::absolute(script).parent_path();
    std::wstring name = testName;
    if (name.empty())
        name = script.empty() ? documentName() : script.stem().wstring();
    return folder / fs::path(fileNameOf(name) + L'.' + kind + L".json");
}

References::References(const std::wstring& kind, const std::wstring& testName)
    : m_file(currentFile(kind, testName)), m_references(readAll(m_file))
{
    Vs::assertMainThread();
}

std::optional<ReferenceValues> References::find(const std::wstring& name) const
{
    const auto found = m_references.find(name);
    if (found == m_references.end() || currentMode == Mode::Update)
        return std::nullopt;
    return found->second;
}

void References::store(const std::wstring& name, const ReferenceValues& values)
{
    if (currentMode == Mode::Compare)
        throw Vs::Exception(localizedFormat("ReferenceMissing", "There is no reference \"%1%\" in %2%.", name,
                                            m_file.wstring()));
    m_references[name] = values;
    QJsonObject entries;
    for (const auto& [entry, kept] : m_references)
        entries.insert(qt(entry), jsonOf(kept));
    const QJsonObject content{{QLatin1String(kFormat), kNewestFormat}, {QLatin1String(kReferences), entries}};
    Vs::JsonFile::write(m_file, content, Vs::JsonFile::Readers::Everybody);
}

} // namespace Vu
