#include "UI/Base/Session/RecentPaths.h"

#include "Server/Base/PathInfo.h"

#include <algorithm>
#include <utility>

namespace Vu {
namespace {

constexpr const char* kPaths = "paths";
constexpr const char* kPinned = "pinned";

} // namespace

RecentPaths& RecentPaths::files()
{
    static auto* const paths = new RecentPaths("RecentFiles");
    return *paths;
}

RecentPaths& RecentPaths::scripts()
{
    static auto* const paths = new RecentPaths("RecentScripts");
    return *paths;
}

void RecentPaths::read()
{
    if (std::exchange(m_read, true))
        return;
    for (const bool pinned : {true, false}) {
        size_t taken = 0;
        for (const std::wstring& path : m_store.value(pinned ? kPinned : kPaths, std::vector<std::wstring>()))
            if (!path.empty() && taken < kMaximum && find(path) == m_entries.end()) {
                m_entries.push_back({path, pinned});
                ++taken;
            }
    }
}

void RecentPaths::write()
{
    std::vector<std::wstring> pinned, others;
    for (const Entry& entry : m_entries)
        (entry.isPinned ? pinned : others).push_back(entry.path);
    m_store.setValue(kPinned, pinned);
    m_store.setValue(kPaths, others);
    forEach([](RecentPathsEventSite* site) { site->recentPathsChanged(); });
}

std::vector<RecentPaths::Entry>::iterator RecentPaths::find(const std::wstring& path)
{
    return std::ranges::find(m_entries, path, &Entry::path);
}

const std::vector<RecentPaths::Entry>& RecentPaths::entries()
{
    read();
    return m_entries;
}

void RecentPaths::add(const std::wstring& given)
{
    if (given.empty())
        return;
    read();
    const std::wstring path = Vs::PathInfo::absolute(given).lexically_normal().wstring();
    const auto known = find(path);
    const bool pinned = known != m_entries.end() && known->isPinned;
    if (known != m_entries.end())
        m_entries.erase(known);
    const auto firstOther = std::ranges::find(m_entries, false, &Entry::isPinned);
    m_entries.insert(pinned ? m_entries.begin() : firstOther, {path, pinned});
    const auto others = std::ranges::count(m_entries, false, &Entry::isPinned);
    if (!pinned && others > static_cast<std::ptrdiff_t>(kMaximum))
        m_entries.pop_back();
    write();
}

void RecentPaths::remove(const std::wstring& path)
{
    read();
    const auto known = find(path);
    if (known == m_entries.end())
        return;
    m_entries.erase(known);
    write();
}

void RecentPaths::pin(const std::wstring& path, bool value)
{
    read();
    const auto known = find(path);
    const auto pinned = static_cast<size_t>(std::ranges::count(m_entries, true, &Entry::isPinned));
    if (known == m_entries.end() || known->isPinned == value || (value && pinned == kMaximum))
        return;
    m_entries.erase(known);
    // The first of its kind.
    m_entries.insert(value ? m_entries.begin() : std::ranges::find(m_entries, false, &Entry::isPinned),
                     {path, value});
    write();
}

void RecentPaths::clear()
{
    read();
    if (std::erase_if(m_entries, [](const Entry& entry) { return !entry.isPinned; }) > 0)
        write();
}

} // namespace Vu
