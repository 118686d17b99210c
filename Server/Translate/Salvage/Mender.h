#pragma once

#include "Server/Translate/Salvage/Instances.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs::Translate::Salvage {

/// Makes a whole again from the instances that are left of a file.
class Mender
{
public:
    explicit Mender(const Instances& instances) : m_instances(instances) {}

    /// How many of the faces that a shell names are left out.
    struct Loss
    {
        size_t lost = 0, all = 0;
    };

    void mend();
    /// All statements, each with its terminator; empty if nothing can be shown.
    std::string data() const;
    /// Keyed by the names of the parts.
    const std::map<std::string, Loss>& losses() const { return m_losses; }
    bool lostUnits() const { return m_lostUnits; }
    size_t looseFaces() const { return m_looseFaces; }

private:
    static bool is(const Instance& instance, Role role) { return instance.roles.test(size_t(role)); }
    uint32_t add(const std::string& statement);
    static std::string listOf(const std::vector<uint32_t>& numbers);

    void countFaces();
    void mendSolids();
    void gatherLooseFaces();
    void gatherLooseShells();
    void gatherLooseShapes();
    void giveProducts();
    void makeProduct(uint32_t representation);
    void findSubstitutes();
    void findLinkers();
    uint32_t context();
    std::string partOf(uint32_t item) const;
    std::string printed(const Instance& instance) const;
    std::unordered_set<uint32_t> linkedBy(Role role) const;

    const Instances& m_instances;
    std::map<std::string, Loss> m_losses;
    std::unordered_map<uint32_t, Loss> m_ofShell;
    std::unordered_map<uint32_t, std::string> m_replaced; ///< Statements that replace another.
    /// Representations, their relationships and definitions, by what they link to.
    std::unordered_map<uint32_t, std::vector<const Instance*>> m_linkers;
    std::vector<std::string> m_added;
    std::vector<uint32_t> m_newShells, m_newShapes;
    uint32_t m_next = 0;
    std::map<Role, uint32_t> m_substitutes; ///< What replaces a missing target of that role.
    uint32_t m_exponents[2] = {};           ///< The same, for angles and for lengths.
    bool m_lostUnits = false;
    size_t m_looseFaces = 0;
    bool m_hasShapes = false;
};

} // namespace Vs::Translate::Salvage
