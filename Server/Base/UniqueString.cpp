#include "Server/Base/UniqueString.h"

#include "Server/Base/Strings.h"

#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

namespace Vs {

namespace {

struct Table
{
    std::shared_mutex mutex;
    std::unordered_map<std::string_view, const UniqueString*> entries;
};

// Never destroyed: statics of other libraries look identifiers up until the very end of the process.
Table& table()
{
    static Table& table = *new Table;
    return table;
}

} // namespace

UniqueString::UniqueString(std::string_view text) : m_text(text), m_wideText(Strings::widen(text)) {}

const UniqueString* UniqueString::find(std::string_view text, bool create)
{
    Table& all = table();
    {
        std::shared_lock lock(all.mutex);
        if (auto found = all.entries.find(text); found != all.entries.end())
            return found->second;
    }
    if (!create)
        return nullptr;
    std::unique_lock lock(all.mutex);
    if (auto found = all.entries.find(text); found != all.entries.end())
        return found->second;
    const auto* fresh = new UniqueString(text);
    all.entries.emplace(fresh->text(), fresh);
    return fresh;
}

} // namespace Vs
