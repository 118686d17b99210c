#pragma once

#include "Server/Translate/Shares/StepScan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vs::Translate::Shares {

/// Positions of statements that are items (solids and surface models), in the order of the file.
using Items = std::vector<uint32_t>;

/// Items that can only be read together, each with everything it consists of: the smallest unit of a file.
struct Piece
{
    Items items;
    uint64_t bytes = 0; ///< How much text there is to read.
};

/// The part of a STEP file that one reader reads.
struct Share
{
    std::vector<uint32_t> pieces; ///< Indices into the plan's.
    uint64_t bytes = 0;
};

/// Items listed by one representation and read together.
struct SharedRepresentation
{
    uint32_t number = 0;         ///< Of the representation's statement.
    uint32_t context = 0;        ///< Of its units and tolerances.
    std::vector<uint32_t> items; ///< Numbers, in the order of the representation.
    bool isWhole = true;         ///< These are all that it shows, so that its body can be meshed.
};

/// How a STEP file is divided into shares, and what is left for the process that puts them together.
class SharePlan
{
public:
    struct Wish
    {
        size_t readers = 2;    ///< At once.
        bool isAlways = false; ///< Divide even a file where the gain is less than the cost.
    };

    /// Nothing for a file that is better read as a whole. The scan must outlive the plan.
    static std::optional<SharePlan> of(const StepScan& scan, const Wish& wish);

    /// The largest first.
    const std::vector<Piece>& pieces() const { return m_pieces; }
    /// Distributes some of the pieces; the largest share first.
    std::vector<Share> shares(const std::vector<uint32_t>& pieces, size_t readers) const;

    /// The file without what the items consist of: solids, shells, faces, edges and vertices that it refers
    /// to are present only as names, and must be bound before it is transferred.
    std::string structure() const;
    /// Items as a file, in representations with units and tolerances. With `named`, each has the name of its
    /// part.
    std::string text(const Items& items, bool named = false) const;
    /// Which of these items each representation shows, by positions of statements.
    struct Shown
    {
        uint32_t representation = 0, context = 0;
        Items items;         ///< In the order of the representation.
        bool isWhole = true; ///< These are all that it shows.
    };
    std::vector<Shown> shown(const Items& items) const;
    std::vector<SharedRepresentation> representations(const Items& items) const;
    /// Everything that the items consist of, in an order that depends only on the items: in order of
    /// reference.
    std::vector<uint32_t> closureOf(const Items& items) const;
    /// Whether the structure has a statement only as a name.
    bool isStub(uint32_t place) const { return m_stubs[place]; }
    /// The name of the part that shows the item, and how many faces the item has.
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
    uint64_t measureItems(std::vector<uint32_t>& groups);
    void follow(uint32_t from, uint32_t mark, std::vector<uint32_t>& found) const;
    bool isTopology(uint32_t place) const
    {
        return m_kinds[place] >= Kind::Item && m_kinds[place] <= Kind::Vertex;
    }

    const StepScan& m_scan;
    std::vector<Kind> m_kinds;
    std::vector<Item> m_items;
    std::unordered_map<uint32_t, uint32_t> m_representations; ///< Of the items.
    std::vector<Piece> m_pieces;
    std::vector<bool> m_inItems;          ///< What items consist of.
    std::vector<bool> m_kept;             ///< What the structure keeps of these.
    std::vector<bool> m_stubs;            ///< What it keeps only as a name.
    mutable std::vector<uint32_t> m_seen; ///< The last mark of each statement that was followed.
    mutable uint32_t m_mark = 0;
};

} // namespace Vs::Translate::Shares
