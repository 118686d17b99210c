#include "UI/Application/Lists.h"

#include "Server/Base/ResourceMgr.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "UI/Application/CommandLine.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <regex>

namespace Quillet {
namespace {

/// One object with its fields in the order in which they are added.
class JsonLine
{
public:
    void add(const char* name, const QJsonValue& value)
    {
        m_text += (m_text.isEmpty() ? "{\"" : ",\"") + QByteArray(name) + "\":";
        // Qt writes only whole documents; a list of one value, without its brackets, is the value.
        const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
        m_text += list.mid(1, list.size() - 2);
    }
    void add(const char* name, const std::wstring& value) { add(name, QString::fromStdWString(value)); }
    void add(const char* name, const std::string& value) { add(name, QString::fromStdString(value)); }

    void print() const { std::printf("%s}\n", m_text.constData()); }

private:
    QByteArray m_text;
};

/// The class's own name without its namespaces, of which there are more in template arguments.
std::string className(const Vu::CommandDefinition& definition)
{
    static const std::regex namespaces(R"((\w+|\(anonymous namespace\)|\{anonymous\})::)");
    return std::regex_replace(definition.getInterfaceId()->text(), namespaces, "");
}

/// The path as in the resource catalogues, relative to the add-in's resource folder.
std::wstring iconPath(const Vs::ImageSetResource* icon)
{
    static const std::wstring folder = L"/Resources/";
    const std::wstring path = icon ? icon->localPath() : std::wstring();
    const size_t found = path.rfind(folder);
    return found == std::wstring::npos ? path : path.substr(found + folder.size());
}

} // namespace

void listCommands()
{
    for (const Vs::TextCommand* command : Vs::TextCommandMgr::get()->commands()) {
        JsonLine line;
        line.add("area", command->area());
        line.add("name", command->name());
        line.add("help", command->help());
        line.add("format", command->format());
        if (!command->definitionKey().empty())
            line.add("definition", command->definitionKey());
        line.print();
    }
}

void listDefinitions()
{
    for (const Vu::CommandDefinition* definition : Vu::CommandDefinitionMgr::get()->commandDefinitions()) {
        QJsonArray groups;
        for (const Vs::UniqueString* group : definition->commandGroups())
            groups.append(QString::fromStdString(group->text()));
        JsonLine line;
        line.add("class", className(*definition));
        line.add("id", definition->id());
        line.add("title", definition->info()->name());
        line.add("icon", iconPath(definition->info()->icon()));
        line.add("groups", groups);
        if (const auto& declared = definition->info()->arguments()) {
            QJsonArray arguments;
            for (const std::wstring& argument : *declared)
                arguments.append(QString::fromStdWString(argument));
            line.add("arguments", arguments);
        }
        line.add("hotkey", definition->info()->hotkey().keys());
        line.add("readonly", definition->readonly());
        line.add("reportable", definition->reportable());
        line.add("scriptable", definition->scriptable());
        line.print();
    }
}

void listFormats()
{
    Vs::TranslatorFileRecognizer all({}, false);
    all.recognize();
    for (const Vs::Translator* translator : all.translators()) {
        QJsonArray suffixes;
        for (const std::wstring& suffix : translator->extensions())
            suffixes.append(QString::fromStdWString(suffix));
        JsonLine line;
        line.add("id", translator->identifier());
        line.add("name", translator->name());
        line.add("suffixes", suffixes);
        line.add("reads", translator->canOpen());
        line.add("writes", translator->canSave({}));
        line.print();
    }
}

void listOptions()
{
    for (const OptionText& option : optionTexts()) {
        JsonLine line;
        line.add("name", option.name);
        line.add("value", option.value);
        line.add("help", option.description);
        line.print();
    }
}

} // namespace Quillet
