#include "UI/Base/Program/AreaContents.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <vector>

namespace Vu {
namespace {

std::vector<AreaContents*>& registered()
{
    static auto* const all = new std::vector<AreaContents*>;
    return *all;
}

} // namespace

AreaContents::AreaContents(std::string key, Make make, Title title)
    : m_key(std::move(key)), m_make(std::move(make)), m_title(std::move(title))
{
    Vs::assertMainThread();
    Vs::require(!m_key.empty() && m_make, "contents have a key and a way to be made");
    registered().push_back(this);
}

AreaContents::~AreaContents()
{
    std::erase(registered(), this);
}

const AreaContents* AreaContents::find(const std::string& key)
{
    const auto found = std::find_if(registered().rbegin(), registered().rend(),
                                    [&](const AreaContents* contents) { return contents->m_key == key; });
    return found == registered().rend() ? nullptr : *found;
}

QWidget* AreaContents::make(const std::string& key, QWidget* parent)
{
    const AreaContents* contents = find(key);
    return contents ? contents->m_make(parent) : nullptr;
}

std::wstring AreaContents::title(const std::string& key)
{
    const AreaContents* contents = find(key);
    return contents && contents->m_title ? contents->m_title() : std::wstring();
}

} // namespace Vu
