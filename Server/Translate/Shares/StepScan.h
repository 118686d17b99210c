#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace Vs::Translate::Shares {

/// The place, from `at` on, of the next character in a statement that isn't just part of a name or a number.
size_t nextSign(std::string_view text, size_t at);

/// A STEP file's data split into statements, with the references of each, and nothing else examined: a tenth
/// of a second for 40 MB. The file's bytes must outlive it.
class StepScan
{
public:
    /// Nothing for a file with anything unusual: a number used twice, a dangling reference, several data
    /// sections, a statement that isn't terminated properly.
    static std::optional<StepScan> of(std::string_view file);

    /// Statements are counted from 0, in order.
    size_t size() const { return m_statements.size(); }
    uint32_t number(size_t i) const { return m_statements[i].number; }
    uint32_t largestNumber() const { return m_largest; }
    /// The text between "=" and ";".
    std::string_view text(size_t i) const
    {
        return m_file.substr(m_statements[i].begin, m_statements[i].size);
    }
    /// From "#" to after ";".
    std::string_view whole(size_t i) const
    {
        const Statement& one = m_statements[i];
        return m_file.substr(one.start, one.begin + one.size + 1 - one.start);
    }
    /// Empty for a complex instance.
    std::string_view entity(size_t i) const;
    /// The statements that it refers to, once per reference.
    std::span<const uint32_t> references(size_t i) const
    {
        const size_t end = i + 1 < size() ? m_statements[i + 1].firstReference : m_references.size();
        return std::span(m_references)
            .subspan(m_statements[i].firstReference, end - m_statements[i].firstReference);
    }
    /// Everything before the statements, including "DATA;".
    std::string_view head() const { return m_head; }

private:
    struct Statement
    {
        size_t start, begin;
        uint32_t size, number;
        size_t firstReference;
    };
    class Cutter;

    bool resolve();

    std::string_view m_file, m_head;
    std::vector<Statement> m_statements;
    std::vector<uint32_t> m_references; ///< Numbers, and, once all are known, positions.
    uint32_t m_largest = 0;
};

} // namespace Vs::Translate::Shares
