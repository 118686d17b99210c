#include "Server/Translate/Abridged.h"

#include "Server/Translate/Shares/StepScan.h"

#include <RWStepAP214_ReadWriteModule.hxx>
#include <TCollection_AsciiString.hxx>

#include <map>
#include <vector>

namespace Vs::Translate {

namespace {

/// What is shorter costs the kernel nothing that anyone notices.
constexpr size_t kLong = 4096;
constexpr std::string_view kPoints = "COORDINATES_LIST";

class KnownEntities
{
public:
    bool has(std::string_view entity)
    {
        const auto [place, isNew] = m_known.try_emplace(entity, true);
        if (isNew && !entity.empty()) {
            const TCollection_AsciiString name(entity.data(), static_cast<int>(entity.size()));
            place->second = m_module->CaseStep(name) > 0;
        }
        return place->second;
    }

private:
    Handle(RWStepAP214_ReadWriteModule) m_module = new RWStepAP214_ReadWriteModule;
    std::map<std::string_view, bool> m_known;
};

} // namespace

std::string abridged(std::string_view file)
{
    if (file.find(kPoints) == file.npos)
        return {};
    const auto scan = Shares::StepScan::of(file);
    if (!scan)
        return {};
    KnownEntities known;
    std::vector<bool> isUnread(scan->size()), isWanted(scan->size());
    for (size_t i = 0; i < scan->size(); ++i) {
        isUnread[i] = scan->text(i).size() > kLong && !known.has(scan->entity(i));
        if (!isUnread[i])
            for (const uint32_t reference : scan->references(i))
                isWanted[reference] = true;
    }
    std::string text;
    const char* kept = file.data();
    for (size_t i = 0; i < scan->size(); ++i) {
        const std::string_view statement = scan->text(i), entity = scan->entity(i);
        const bool isUnusedList = statement.size() > kLong && entity == kPoints && !isWanted[i];
        if (!isUnread[i] && !isUnusedList)
            continue;
        text.append(kept, statement.data()).append(entity).append("(");
        const char* separator = "#";
        for (const uint32_t reference : scan->references(i)) {
            text.append(separator).append(std::to_string(scan->number(reference)));
            separator = ",#";
        }
        text.append(isUnusedList ? "'',0,())" : ")");
        kept = statement.data() + statement.size();
    }
    return text.empty() ? text : text.append(kept, file.data() + file.size());
}

} // namespace Vs::Translate
