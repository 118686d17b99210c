#include "Server/Translate/Salvage/IgesEntities.h"

#include <algorithm>

namespace Vs::Translate::Salvage {

namespace {

constexpr size_t kInDirectory = size_t(-1), kNowhere = size_t(-1);

/// Whether the directory says that an entity is only part of another one, which must exist.
bool isPartOfAnother(const IgesRecord& record)
{
    const std::string& status = record.directory.status;
    return status.size() == 8 && (status.substr(2, 2) == "01" || status.substr(2, 2) == "03");
}

/// What is shown by itself even where the entity that referred to it is gone.
bool isShownAlone(const IgesRoles& roles)
{
    for (const IgesRole role : {IgesRole::Face, IgesRole::ShellFace, IgesRole::Shell, IgesRole::Solid,
                                IgesRole::Group, IgesRole::Placement})
        if (roles.test(size_t(role)))
            return true;
    return false;
}

/// What is shown only where nothing else uses it.
bool isShape(const IgesRoles& roles)
{
    for (const IgesRole role : {IgesRole::Surface, IgesRole::Curve, IgesRole::Line, IgesRole::CurveOnSurface,
                                IgesRole::Boundary, IgesRole::Point})
        if (roles.test(size_t(role)))
            return true;
    return false;
}

} // namespace

IgesEntities::IgesEntities(const IgesRecords& records, const std::unordered_set<uint32_t>& without)
{
    m_all.reserve(records.all.size());
    for (const IgesRecord& record : records.all)
        add(record);
    m_uses.resize(m_all.size());
    for (size_t i = 0; i < m_all.size(); ++i) {
        m_byNumber.emplace(m_all[i].record->number, i);
        m_all[i].isGone.resize(m_all[i].found.links.size());
    }
    for (size_t i = 0; i < m_all.size(); ++i)
        for (size_t link = 0; link < m_all[i].found.links.size(); ++link)
            if (const size_t target = placeOf(m_all[i].found.links[link].target); target != kNowhere)
                m_uses[target].push_back({i, link});
    settle();
    cutCycles();
    m_wasDamaged = std::ranges::any_of(m_all, [](const IgesEntity& each) {
        return isKnown(*each.record) && (!each.isSound || each.lostMembers);
    });
    for (const uint32_t number : without)
        if (const size_t place = placeOf(number); place != kNowhere && m_all[place].isSound) {
            m_all[place].isSound = false;
            m_open.push_back(place);
        }
    settle();
    findHeirs();
    dropServants();
}

void IgesEntities::add(const IgesRecord& record)
{
    IgesEntity entity;
    entity.record = &record;
    entity.found = checkEntity(record);
    const IgesRecord::Directory& directory = record.directory;
    // Of the second line, only the form changes what is shown.
    entity.isSound =
        entity.found.isSound && record.hasFirst && directory.matrix && (directory.form || !record.hasSecond);
    entity.lostMembers = entity.found.lostEnd;
    entity.membersLeft =
        size_t(std::ranges::count_if(entity.found.links, [](const IgesLink& link) { return link.mayMiss; }));
    if (const int matrix = directory.matrix.value_or(0); matrix != 0) {
        IgesLink link;
        link.place = kInDirectory;
        link.target = uint32_t(std::max(0, matrix));
        link.roles.set(size_t(IgesRole::Matrix));
        entity.found.links.push_back(link);
    }
    m_all.push_back(std::move(entity));
}

size_t IgesEntities::placeOf(uint32_t number) const
{
    const auto found = m_byNumber.find(number);
    return found == m_byNumber.end() ? kNowhere : found->second;
}

const IgesEntity* IgesEntities::find(uint32_t number) const
{
    const size_t place = placeOf(number);
    return place != kNowhere && m_all[place].isSound ? &m_all[place] : nullptr;
}

bool IgesEntities::holds(const IgesLink& link) const
{
    const IgesEntity* const target = find(link.target);
    return target && (target->found.roles & link.roles).any() && link.index <= target->found.members &&
           !(link.isWhole && target->lostMembers);
}

void IgesEntities::lose(size_t user, size_t link)
{
    IgesEntity& entity = m_all[user];
    if (entity.isGone[link])
        return;
    entity.isGone[link] = true;
    const IgesLink& lost = entity.found.links[link];
    if (lost.mayMiss) {
        // What isn't known isn't shown either.
        const size_t target = placeOf(lost.target);
        const bool isMissed = target == kNowhere || isKnown(*m_all[target].record);
        entity.lostMembers |= isMissed;
        entity.isSound &= --entity.membersLeft > 0;
    } else {
        bool isReplaced = false;
        for (size_t i = 0; lost.isAlternative && i < entity.found.links.size(); ++i)
            isReplaced |= entity.found.links[i].isAlternative && !entity.isGone[i];
        entity.isSound &= isReplaced;
    }
    m_open.push_back(user);
}

void IgesEntities::loseUses(size_t changed)
{
    for (const auto& [user, link] : m_uses[changed])
        if (!holds(m_all[user].found.links[link]))
            lose(user, link);
}

void IgesEntities::settle()
{
    for (size_t user = 0; user < m_all.size(); ++user)
        for (size_t link = 0; link < m_all[user].found.links.size(); ++link)
            if (!holds(m_all[user].found.links[link]))
                lose(user, link);
    while (!m_open.empty()) {
        const size_t changed = m_open.back();
        m_open.pop_back();
        loseUses(changed);
    }
}

/// What refers to itself, over whatever others, would be followed without end.
void IgesEntities::cutCycles()
{
    std::vector<char> states(m_all.size());
    for (size_t i = 0; i < m_all.size(); ++i)
        visit(i, states);
    settle();
}

void IgesEntities::visit(size_t start, std::vector<char>& states)
{
    constexpr char kNew = 0, kOpen = 1, kDone = 2;
    if (states[start] != kNew)
        return;
    std::vector<Use> path{{start, 0}};
    states[start] = kOpen;
    while (!path.empty()) {
        auto& [place, link] = path.back();
        if (!m_all[place].isSound || link == m_all[place].found.links.size()) {
            states[place] = kDone;
            path.pop_back();
            continue;
        }
        const size_t number = link++;
        const size_t target = placeOf(m_all[place].found.links[number].target);
        if (m_all[place].isGone[number] || target == kNowhere || states[target] == kDone)
            continue;
        if (states[target] == kOpen) {
            lose(place, number);
            continue;
        }
        states[target] = kOpen;
        path.push_back({target, 0});
    }
}

/// The surface of a face that was set aside would be shown whole, without its boundary.
void IgesEntities::dropServants()
{
    std::vector<size_t> users(m_all.size());
    std::vector<char> served(m_all.size());
    for (size_t i = 0; i < m_all.size(); ++i)
        for (const auto& [user, link] : m_uses[i]) {
            users[i] += m_all[user].isSound && !m_all[user].isGone[link];
            served[i] |= !m_all[user].isSound || m_all[user].isGone[link];
        }
    std::vector<size_t> alone;
    for (size_t i = 0; i < m_all.size(); ++i)
        if (users[i] == 0)
            alone.push_back(i);
    while (!alone.empty()) {
        const size_t place = alone.back();
        alone.pop_back();
        IgesEntity& entity = m_all[place];
        if (!entity.isSound || !isShape(entity.found.roles) || isShownAlone(entity.found.roles) ||
            !(served[place] || isPartOfAnother(*entity.record)))
            continue;
        entity.isSound = false;
        for (size_t i = 0; i < entity.found.links.size(); ++i)
            if (const size_t target = placeOf(entity.found.links[i].target);
                target != kNowhere && !entity.isGone[i]) {
                served[target] = true;
                if (--users[target] == 0)
                    alone.push_back(target);
            }
    }
}

/// A shell that isn't closed any more is all that is left of its solid.
void IgesEntities::findHeirs()
{
    for (const IgesEntity& solid : m_all) {
        if (solid.isSound || !solid.found.isSound || !solid.found.roles.test(size_t(IgesRole::Solid)))
            continue;
        const size_t place = placeOf(solid.found.links.front().target);
        if (place == kNowhere || !m_all[place].isSound || m_all[place].heirOf)
            continue;
        const auto matrix = solid.record->directory.matrix;
        IgesEntity& shell = m_all[place];
        // Without its place it would be shown where it doesn't belong.
        const bool isPlaced = matrix == 0 || (matrix && find(uint32_t(std::max(0, *matrix))) &&
                                              shell.record->directory.matrix == 0);
        if (isPlaced)
            shell.heirOf = &solid;
        else
            shell.isSound = false;
    }
}

std::string IgesEntities::nameOf(const IgesEntity& entity) const
{
    constexpr int kName = 15;
    for (const uint32_t number : entity.found.properties)
        if (const IgesEntity* const property = find(number);
            property && property->record->directory.form == kName && property->record->values.size() > 1) {
            const std::string_view text = property->record->values[1].text;
            return std::string(text.substr(text.find('H') + 1));
        }
    const std::string& label = entity.record->directory.label;
    const size_t begin = label.find_first_not_of(' ');
    return begin == label.npos ? std::string() : label.substr(begin, label.find_last_not_of(' ') + 1 - begin);
}

std::string IgesEntities::partOf(const IgesEntity& entity) const
{
    constexpr int kDeepest = 100;
    size_t place = placeOf(entity.record->number);
    for (int level = 0; level < kDeepest; ++level) {
        if (std::string name = nameOf(m_all[place]); !name.empty())
            return name;
        if (m_uses[place].empty())
            break;
        place = m_uses[place].front().user;
    }
    return {};
}

} // namespace Vs::Translate::Salvage
