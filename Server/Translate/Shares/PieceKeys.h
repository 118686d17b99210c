#pragma once

#include "Server/Translate/Shares/SharePlan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vs::Translate::Shares {

/// Identifies a piece of a STEP file, whatever the file and its numbers.
struct PieceKey
{
    std::string key;               ///< Letters and digits.
    std::vector<uint32_t> numbers; ///< Of the statements in this file, in an order common to all files.
};

/// Keys cover everything that a piece consists of, its units and tolerances, and what is requested for it;
/// not numbers, blanks, comments and the order of statements. They are valid for this version of the kernel,
/// and for the mesh that it makes here.
class PieceKeys
{
public:
    PieceKeys(const StepScan& scan, const SharePlan& plan);

    PieceKey of(const Piece& piece);

private:
    void add(uint32_t statement);
    uint32_t placeOf(uint32_t statement);

    const StepScan& m_scan;
    const SharePlan& m_plan;
    std::vector<uint32_t> m_places, m_marks; ///< Of statements in the current piece, and whether.
    uint32_t m_mark = 0;
    std::vector<uint32_t> m_order;
    std::string m_text;
};

} // namespace Vs::Translate::Shares
