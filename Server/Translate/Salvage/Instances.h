#pragma once

#include "Server/Translate/Salvage/EntityRules.h"
#include "Server/Translate/Salvage/StepText.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs::Translate::Salvage {

/// One reference of an instance to another.
struct Link
{
    uint32_t target = 0;         ///< The number written there.
    Role role = Role::Count;     ///< What the target must be; Count for anything.
    bool mayMiss = false;        ///< One of a list that need not be whole.
    bool isGone = false;         ///< Known not to lead to what it must.
    uint32_t begin = 0, end = 0; ///< Where it is in the text.
};

struct Instance
{
    uint32_t number = 0;
    std::string_view text;
    std::string_view entity; ///< For a complex one, the first.
    Roles roles;
    std::vector<Link> links;
    bool isSound = false;
};

/// The content of a damaged file, each instance judged first by itself and then by what it refers to:
/// whatever is unsound is set aside, together with what can't do without it.
class Instances
{
public:
    /// The bytes must outlive this. The instances of `without` are unsound, whatever they hold.
    explicit Instances(std::string_view bytes, const std::unordered_set<uint32_t>& without = {});

    const std::vector<Instance>& all() const { return m_all; }
    /// Null if there is no sound instance of that number.
    const Instance* find(uint32_t number) const;
    /// Whether another instance can replace the link's missing target: one that carries no information
    /// itself.
    static bool canBeReplaced(const Instance& instance, const Link& link);
    /// Whether a link leads to what it must.
    bool holds(const Link& link) const;
    /// Pieces, statements and list members that were set aside, of whatever kind.
    size_t setAside() const;
    /// A number that no instance has, nor any above it.
    uint32_t freeNumber() const { return m_free; }

private:
    void add(const StepStatement& statement);
    class Settling;
    bool becomesItsCurve(Instance& instance);
    bool becomesItsSpare(Instance& instance);
    void dropUnplaced();
    void dropCycles();

    std::vector<Instance> m_all;
    std::unordered_map<uint32_t, size_t> m_byNumber;
    std::unordered_map<uint32_t, Instance> m_spares; ///< Further ones whose numbers occur twice.
    size_t m_lost = 0;
    uint32_t m_free = 1;
};

} // namespace Vs::Translate::Salvage
