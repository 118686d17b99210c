#pragma once

#include "Server/Translate/Salvage/IgesRecords.h"
#include "Server/Translate/Salvage/IgesRules.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs::Translate::Salvage {

/// An entity of a damaged IGES file.
struct IgesEntity
{
    const IgesRecord* record = nullptr;
    IgesFindings found;
    std::vector<bool> isGone; ///< By link: it doesn't lead to what it must.
    bool isSound = false;
    bool lostMembers = false;
    size_t membersLeft = 0;             ///< Of its list.
    const IgesEntity* heirOf = nullptr; ///< A solid whose name, place and colour it has taken over.
};

/// The entities of a damaged file, each judged first by itself and then by what it refers to: whatever is
/// unsound is set aside, with what can't do without it and with what only served it.
class IgesEntities
{
public:
    /// The entities of `without` are unsound, whatever they hold.
    explicit IgesEntities(const IgesRecords& records, const std::unordered_set<uint32_t>& without = {});

    const std::vector<IgesEntity>& all() const { return m_all; }
    /// Null if there is no sound entity of that number.
    const IgesEntity* find(uint32_t number) const;
    /// The name of the part that an entity belongs to, or belonged to; empty if there is none.
    std::string partOf(const IgesEntity& entity) const;
    /// Whether anything unsound was found, beside what was asked for.
    bool wasDamaged() const { return m_wasDamaged; }

private:
    void add(const IgesRecord& record);
    void settle();
    void loseUses(size_t changed);
    bool holds(const IgesLink& link) const;
    void lose(size_t user, size_t link);
    void cutCycles();
    void visit(size_t start, std::vector<char>& states);
    void dropServants();
    void findHeirs();
    std::string nameOf(const IgesEntity& entity) const;
    size_t placeOf(uint32_t number) const;

    std::vector<IgesEntity> m_all;
    std::unordered_map<uint32_t, size_t> m_byNumber;
    struct Use
    {
        size_t user, link;
    };
    std::vector<std::vector<Use>> m_uses; ///< Of each entity.
    std::vector<size_t> m_open;           ///< Changed entities, whose users are still to be judged.
    bool m_wasDamaged = false;
};

} // namespace Vs::Translate::Salvage
