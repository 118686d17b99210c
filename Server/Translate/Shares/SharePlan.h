#pragma once

#include "Server/Translate/Shares/StepScan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Translate::Shares {

/// What of a STEP file a reader of its own reads: some of the items (solids and surface models) of its
/// representations, each with all that it consists of.
struct Share
{
    std::vector<uint32_t> items; ///< Places of statements, in the order of the file.
    uint64_t bytes = 0;          ///< How much text there is to read.
};

/// Items that one representation lists, and that one share holds.
struct SharedRepresentation
{
    uint32_t number = 0;         ///< Of the representation's statement.
    uint32_t context = 0;        ///< Of its units and tolerances.
    std::vector<uint32_t> items; ///< Numbers, in the order of the representation.
    bool isWhole = true;         ///< These are all that it shows, so that its body can be meshed.
};

/// How a STEP file is divided into shares, and what is left for the one that puts them together.
class SharePlan
{
public:
    struct Wish
    {
        size_t readers = 2;    ///< At once.
        bool isAlways = false; ///< Also a file of which less can be gained than it costs.
    };

    /// Nothing for a file that is better read as a whole. The scan must outlive the plan.
    static std::optional<SharePlan> of(const StepScan& scan, const Wish& wish);

    /// The largest first.
    const std::vector<Share>& shares() const { return m_shares; }
    uint64_t bytes() const { return m_bytes; }

    /// The file without what the items consist of: solids, shells, faces, edges and vertices that it refers
    /// to are there by name alone, and have to be known before it is transferred.
    std::string structure() const;
    /// A share as a file: its items, in representations with units and tolerances.
    /// With `named`, each item has the name of its part.
    std::string text(const Share& share, bool named = false) const;
    std::vector<SharedRepresentation> representations(const Share& share) const;
    /// The numbers of what the structure knows by name alone, of all that the share holds.
    std::vector<uint32_t> wanted(const Share& share) const;
    /// What the part is called that shows the item, and how many faces that has.
    std::string partOf(uint32_t item) const;
    size_t facesOf(uint32_t item) const;

private:
    enum class Kind : uint8_t { Other, Item, Shell, Face, Edge, Vertex, Representation, Unusual };
    struct Item
    {
        uint32_t place, representation;
        uint64_t bytes = 0;
    };

    explicit SharePlan(const StepScan& scan) : m_scan(scan) {}
    static Kind kindOf(std::string_view entity);
    bool takeKinds();
    void findItems();
    bool divide(const Wish& wish);
    bool findStubs();
    template <class Visit>
    void walk(uint32_t from, std::vector<uint32_t>& seen, uint32_t mark, Visit visit) const;
    std::vector<bool> closureOf(const Share& share) const;
    uint64_t measureItems(std::vector<uint32_t>& groups);
    bool isTopology(uint32_t place) const
    {
        return m_kinds[place] >= Kind::Item && m_kinds[place] <= Kind::Vertex;
    }

    const StepScan& m_scan;
    std::vector<Kind> m_kinds;
    std::vector<Item> m_items;
    std::vector<Share> m_shares;
    uint64_t m_bytes = 0;
    std::vector<bool> m_inItems; ///< What items consist of.
    std::vector<bool> m_kept;    ///< What the structure has of these.
    std::vector<bool> m_stubs;   ///< What it has by name alone.
};

} // namespace Vs::Translate::Shares
