#include "Server/DataModel/Edit/Private/ComponentGroups.h"

#include "Server/Base/Strings.h"
#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"

#include <iterator>
#include <set>
#include <sstream>

namespace Vs {

namespace {

constexpr const char* kPrefix = "ComponentGroup.";
constexpr const char* kTo = "..";
// No more are ever made at once, so that a handwritten file can't make the program count for years.
constexpr int kMostMembers = 200000;
constexpr int kHighestPlace = 1 << 30;

/// What the member would be called next to a component of its group: in the same occurrence of an assembly.
std::string beside(const std::string& component, const std::string& member)
{
    const std::string parent = parentId(component);
    return parent.empty() ? placeOf(member) : parent + '/' + placeOf(member);
}

std::string beginningOf(const std::string& id)
{
    return id.substr(0, id.rfind(':') + 1);
}

template <class Runs>
void append(Runs& runs, const std::string& beginning, int first, int last)
{
    if (!runs.empty() && runs.back().beginning == beginning && runs.back().last == first - 1)
        runs.back().last = last;
    else
        runs.push_back({beginning, first, last});
}

template <class Runs>
long long sizeOf(const Runs& runs)
{
    long long size = 0;
    for (const auto& run : runs)
        size += 1LL + run.last - run.first;
    return size;
}

/// Takes numbers out of a run, and appends what is left of it.
template <class Runs>
void appendWithout(Runs& runs, const typename Runs::value_type& run, const std::set<int>& gone)
{
    int first = run.first;
    for (auto each = gone.lower_bound(first); each != gone.end() && *each <= run.last; ++each) {
        if (first < *each)
            append(runs, run.beginning, first, *each - 1);
        first = *each + 1;
    }
    if (first <= run.last)
        append(runs, run.beginning, first, run.last);
}

} // namespace

ComponentGroups::ComponentGroups(Asset& asset) : m_asset(asset)
{
    const auto& settings = asset.settings();
    for (auto each = settings.lower_bound(kPrefix);
         each != settings.end() && each->first.starts_with(kPrefix); ++each) {
        Runs& runs = m_members[each->first];
        std::istringstream members(Strings::narrow(each->second));
        for (std::string member; members >> member;) {
            const size_t to = member.find(kTo);
            const int first = lastNumber(member.substr(0, to));
            const int last = to == std::string::npos ? first : lastNumber("0:" + member.substr(to + 2));
            if (first >= 0 && last >= first && last < kHighestPlace &&
                sizeOf(runs) + last - first < kMostMembers)
                append(runs, beginningOf(member), first, last);
        }
        index(each->first);
    }
}

void ComponentGroups::index(const std::string& key)
{
    const auto& [known, runs] = *m_members.find(key);
    for (const Run& run : runs)
        m_places[placeOf(run.beginning)][run.first] = {run.last, &known};
}

const std::string* ComponentGroups::keyOf(const std::string& component) const
{
    const std::string place = placeOf(component);
    const auto places = m_places.find(beginningOf(place));
    if (places == m_places.end())
        return nullptr;
    const int number = lastNumber(place);
    const auto after = places->second.upper_bound(number);
    if (after == places->second.begin())
        return nullptr;
    const Place& run = std::prev(after)->second;
    return number <= run.last ? run.key : nullptr;
}

void ComponentGroups::add(const std::vector<std::string>& components)
{
    if (components.size() < 2)
        return;
    Runs runs;
    for (const std::string& component : components)
        append(runs, beginningOf(component), lastNumber(component), lastNumber(component));
    // No place is ever reused by another component, so the key is unique to the group.
    keep(kPrefix + placeOf(components.front()), runs);
}

void ComponentGroups::keep(const std::string& key, const Runs& runs)
{
    std::string members;
    for (const Run& run : runs) {
        members += (members.empty() ? "" : " ") + run.beginning + std::to_string(run.first);
        if (run.last > run.first)
            members += kTo + std::to_string(run.last);
    }
    m_asset.setting(key, Strings::widen(members));
}

std::vector<std::string> ComponentGroups::groupOf(const std::string& component) const
{
    std::vector<std::string> there;
    const std::string* key = keyOf(component);
    if (!key)
        return there;
    for (const Run& run : m_members.at(*key))
        for (int number = run.first; number <= run.last; ++number) {
            const std::string member = run.beginning + std::to_string(number);
            const std::string sibling = beside(component, member);
            const std::string& id = m_asset.findComponent(sibling) ? sibling : member;
            if (m_asset.findComponent(id))
                there.push_back(id);
        }
    return there;
}

void ComponentGroups::remove(const std::vector<std::string>& components)
{
    std::map<std::string, std::map<std::string, std::set<int>>> gone; // Places of each group.
    for (const std::string& component : components)
        if (const std::string* key = keyOf(component)) {
            const std::string place = placeOf(component);
            gone[*key][beginningOf(place)].insert(lastNumber(place));
        }
    for (const auto& [key, places] : gone) {
        Runs left;
        for (const Run& run : m_members[key]) {
            const auto numbers = places.find(placeOf(run.beginning));
            appendWithout(left, run, numbers == places.end() ? std::set<int>() : numbers->second);
        }
        if (sizeOf(left) < 2)
            m_asset.setting(key, {});
        else
            keep(key, left);
    }
}

bool ComponentGroups::separate(const std::string& component)
{
    const std::string* key = keyOf(component);
    if (!key)
        return false;
    m_asset.setting(*key, {});
    return true;
}

} // namespace Vs
