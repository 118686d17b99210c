#include "Server/Translate/Salvage/Instances.h"

#include "Server/Translate/Salvage/StepChecks.h"

#include <algorithm>
#include <map>
#include <utility>

namespace Vs::Translate::Salvage {

/// Lets unsound instances take down those that can't do without them. Each link is examined when its target
/// is dropped, so that no chain of them, in whatever order they are in the file, costs more than one pass
/// over it.
class Instances::Settling
{
public:
    explicit Settling(Instances& instances)
        : m_instances(instances), m_uses(instances.m_all.size()), m_members(instances.m_all.size())
    {
    }

    void run()
    {
        for (size_t i = 0; i < m_uses.size(); ++i)
            enter(i);
        for (size_t i = 0; i < m_uses.size(); ++i)
            judge(i);
        while (!m_open.empty()) {
            const size_t changed = m_open.back();
            m_open.pop_back();
            judgeUsersOf(changed);
        }
    }

private:
    struct Use
    {
        size_t user, link;
    };

    Instance& at(size_t place) { return m_instances.m_all[place]; }

    /// Records what an instance refers to.
    void enter(size_t place)
    {
        m_members[place] = 0;
        for (size_t i = 0; i < at(place).links.size(); ++i) {
            Link& link = at(place).links[i];
            link.isGone = false;
            m_members[place] += link.mayMiss;
            const auto target = m_instances.m_byNumber.find(link.target);
            if (target != m_instances.m_byNumber.end())
                m_uses[target->second].push_back({place, i});
        }
    }

    void judge(size_t place)
    {
        for (size_t i = 0; at(place).isSound && i < at(place).links.size(); ++i)
            if (goes(place, i))
                i = size_t(-1); // It was changed into another one.
    }

    void judgeUsersOf(size_t changed)
    {
        const std::vector<Use> uses = m_uses[changed]; // Those that are changed into others add themselves.
        for (const auto& [user, link] : uses)
            if (at(user).isSound && link < at(user).links.size() &&
                at(user).links[link].target == at(changed).number && goes(user, link))
                judge(user);
    }

    /// Whether the instance couldn't do without what the link lost, and was changed into another one, which
    /// must be judged again.
    bool goes(size_t place, size_t number)
    {
        Instance& instance = at(place);
        Link& link = instance.links[number];
        if (link.isGone || m_instances.holds(link) || canBeReplaced(instance, link))
            return false;
        link.isGone = true;
        if (link.mayMiss && --m_members[place] > 0)
            return false;
        instance.isSound = m_instances.becomesItsCurve(instance) || m_instances.becomesItsSpare(instance);
        m_open.push_back(place);
        if (instance.isSound)
            enter(place);
        return instance.isSound;
    }

    Instances& m_instances;
    std::vector<std::vector<Use>> m_uses; ///< Of each instance.
    std::vector<size_t> m_members;        ///< How many members are left in the lists that need not be whole.
    std::vector<size_t> m_open;           ///< Changed instances, whose users are still to be judged.
};

Instances::Instances(std::string_view bytes, const std::unordered_set<uint32_t>& without)
{
    const std::vector<StepStatement> statements = statementsOf(bytes, m_lost);
    m_all.reserve(statements.size());
    for (const StepStatement& statement : statements)
        add(statement);
    for (const uint32_t number : without)
        if (const auto found = m_byNumber.find(number); found != m_byNumber.end()) {
            m_all[found->second].isSound = false;
            m_spares.erase(number);
        }
    Settling(*this).run();
    dropCycles();
    dropUnplaced();
    Settling(*this).run();
}

/// An occurrence that lost its placement would be in its assembly without being visible; without the
/// occurrence the part is a root of its own.
void Instances::dropUnplaced()
{
    std::unordered_map<uint32_t, bool> isPlaced; // By the occurrences' properties with a placement.
    for (const Instance& instance : m_all) {
        if (instance.text.find("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION") != instance.text.npos &&
            instance.links.size() == 2)
            isPlaced[instance.links[1].target] |= instance.isSound;
    }
    for (const Instance& property : m_all) {
        if (const auto placed = isPlaced.find(property.number);
            placed == isPlaced.end() || placed->second || property.links.empty())
            continue;
        const auto found = m_byNumber.find(property.links[0].target);
        if (found != m_byNumber.end() && m_all[found->second].entity == "NEXT_ASSEMBLY_USAGE_OCCURRENCE")
            m_all[found->second].isSound = false;
    }
}

/// Occurrences of an assembly within itself. If it is used nowhere else, nothing would be left to begin with.
void Instances::dropCycles()
{
    struct Definition
    {
        std::vector<Instance*> usages;
        bool isUsed = false, isOpen = false, isDone = false;
    };
    std::map<uint32_t, Definition> definitions;
    for (Instance& usage : m_all)
        if (usage.isSound && usage.entity == "NEXT_ASSEMBLY_USAGE_OCCURRENCE" && usage.links.size() == 2) {
            definitions[usage.links[0].target].usages.push_back(&usage);
            definitions[usage.links[1].target].isUsed = true;
        }
    const auto follow = [&](Definition& start) {
        std::vector<std::pair<Definition*, size_t>> path;
        const auto enter = [&](Definition& definition) {
            definition.isOpen = true;
            path.emplace_back(&definition, 0);
        };
        if (!start.isDone)
            enter(start);
        while (!path.empty()) {
            Definition& whole = *path.back().first;
            if (path.back().second == whole.usages.size()) {
                whole.isOpen = false;
                whole.isDone = true;
                path.pop_back();
                continue;
            }
            Instance& usage = *whole.usages[path.back().second++];
            Definition& part = definitions[usage.links[1].target];
            if (part.isOpen)
                usage.isSound = false;
            else if (!part.isDone)
                enter(part);
        }
    };
    for (const bool isUsed : {false, true})
        for (auto& [number, definition] : definitions)
            if (definition.isUsed == isUsed)
                follow(definition);
}

void Instances::add(const StepStatement& statement)
{
    Instance instance;
    instance.isSound = checkStatement(statement, instance);
    const auto [place, isNew] = m_byNumber.try_emplace(statement.number, m_all.size());
    if (isNew) {
        m_all.push_back(std::move(instance));
    } else {
        ++m_lost;
        if (!m_all[place->second].isSound)
            m_all[place->second] = std::move(instance);
        else if (instance.isSound)
            m_spares.try_emplace(statement.number, std::move(instance));
    }
    if (m_all[place->second].isSound)
        m_free = std::max(m_free, statement.number + 1);
}

const Instance* Instances::find(uint32_t number) const
{
    const auto found = m_byNumber.find(number);
    return found != m_byNumber.end() && m_all[found->second].isSound ? &m_all[found->second] : nullptr;
}

bool Instances::holds(const Link& link) const
{
    const Instance* target = find(link.target);
    if (!target || link.role == Role::Count)
        return target != nullptr;
    // The standard has more of these than the table of rules, and the kernel skips them.
    const bool hasUnknown =
        link.role == Role::Item || link.role == Role::Colour || link.role == Role::Measure;
    return target->roles.test(static_cast<size_t>(link.role)) || (hasUnknown && target->roles.none());
}

bool Instances::canBeReplaced(const Instance& instance, const Link& link)
{
    return (link.role == Role::Context && instance.entity != "DEFINITIONAL_REPRESENTATION") ||
           link.role == Role::ProductContext || link.role == Role::DefinitionContext ||
           link.role == Role::Exponents;
}

/// Of two with the same number, the first sound one.
bool Instances::becomesItsSpare(Instance& instance)
{
    const auto spare = m_spares.extract(instance.number);
    if (spare.empty())
        return false;
    instance = std::move(spare.mapped());
    return true;
}

/// A curve on surfaces, with parametric curves, can be replaced by its 3D curve alone.
bool Instances::becomesItsCurve(Instance& instance)
{
    const auto isOnSurfaces = [](const Instance& one) {
        return one.entity == "SURFACE_CURVE" || one.entity == "SEAM_CURVE" ||
               one.entity == "INTERSECTION_CURVE";
    };
    if (!isOnSurfaces(instance))
        return false;
    if (instance.links.empty() || !holds(instance.links[0]))
        return false;
    const Instance curve = *find(instance.links[0].target);
    // Two that are each other's curve would go on for ever.
    if (isOnSurfaces(curve))
        return false;
    ++m_lost;
    const uint32_t number = instance.number;
    instance = curve;
    instance.number = number;
    return true;
}

size_t Instances::setAside() const
{
    size_t count = m_lost;
    for (const Instance& instance : m_all) {
        count += !instance.isSound;
        for (const Link& link : instance.links)
            count += instance.isSound && !holds(link);
    }
    return count;
}

} // namespace Vs::Translate::Salvage
