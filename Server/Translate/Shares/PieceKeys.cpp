#include "Server/Translate/Shares/PieceKeys.h"

#include "Server/DataModel/Translator.h"

#include <Standard_Version.hxx>

#include <cstdio>
#include <cstring>
#include <xxhash.h>

namespace Vs::Translate::Shares {

namespace {

// Increase whenever the same statements would give other shapes or triangles.
constexpr const char* kVersion = "2-" OCC_VERSION_COMPLETE;

} // namespace

PieceKeys::PieceKeys(const StepScan& scan, const SharePlan& plan)
    : m_scan(scan), m_plan(plan), m_places(scan.size()), m_marks(scan.size())
{
}

/// In the order in which statements are first referenced.
uint32_t PieceKeys::placeOf(uint32_t statement)
{
    if (m_marks[statement] != m_mark) {
        m_marks[statement] = m_mark;
        m_places[statement] = static_cast<uint32_t>(m_order.size());
        m_order.push_back(statement);
    }
    return m_places[statement];
}

/// Its text without blanks and comments, and with placeholders for numbers.
void PieceKeys::add(uint32_t statement)
{
    const std::string_view text = m_scan.text(statement);
    const auto references = m_scan.references(statement);
    size_t reference = 0, begin = 0;
    // Writers name a context by its number in the file, and nothing depends on that.
    constexpr std::string_view kContext = "REPRESENTATION_CONTEXT";
    const std::string_view entity = m_scan.entity(statement);
    const bool isNameless = entity.empty() ? text.find(kContext) != text.npos : entity.ends_with(kContext);
    const auto takeTo = [&](size_t at) { m_text.append(text.substr(begin, at - begin)); };
    for (size_t at = nextSign(text, 0); at < text.size(); at = nextSign(text, at + 1)) {
        switch (const char c = text[at]) {
        case '\'':
        case '"':
            if (isNameless)
                takeTo(at);
            at = std::min(text.find(c, at + 1), text.size());
            if (isNameless)
                begin = std::min(at + 1, text.size());
            break;
        case '#':
            takeTo(at + 1);
            m_text += std::to_string(placeOf(references[reference++]));
            while (at + 1 < text.size() && text[at + 1] >= '0' && text[at + 1] <= '9')
                ++at;
            begin = at + 1;
            break;
        case ' ':
        case '\n':
        case '\r':
        case '\t':
            takeTo(at);
            begin = at + 1;
            break;
        case '/':
            if (text.substr(at, 2) == "/*") {
                takeTo(at);
                at = std::min(text.find("*/", at + 2), text.size()) + 1;
                begin = std::min(at + 1, text.size());
            }
            break;
        default:
            break;
        }
    }
    takeTo(text.size());
    m_text += ';';
}

PieceKey PieceKeys::of(const Piece& piece)
{
    ++m_mark;
    m_order.clear();
    const TranslatorRefinement mesh;
    m_text = kVersion;
    m_text += ' ' + std::to_string(mesh.surfaceDeviation) + ' ' + std::to_string(mesh.normalDeviation) + '\n';
    // What the representations say about the items: which of them make one body, and in which units.
    for (const SharePlan::Shown& shown : m_plan.shown(piece.items)) {
        m_text += shown.isWhole ? "whole" : "some";
        for (const uint32_t item : shown.items)
            m_text += ' ' + std::to_string(placeOf(item));
        m_text += " in " + std::to_string(placeOf(shown.context)) + '\n';
    }
    for (size_t next = 0; next < m_order.size(); ++next)
        add(m_order[next]);
    PieceKey key;
    key.numbers.reserve(m_order.size());
    for (size_t i = 0; i < m_order.size(); ++i) {
        key.numbers.push_back(m_scan.number(m_order[i]));
        if (m_plan.isStub(m_order[i]))
            m_text += std::to_string(i) + ',';
    }
    const XXH128_hash_t hash = XXH3_128bits(m_text.data(), m_text.size());
    char text[33];
    std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(hash.high64),
                  static_cast<unsigned long long>(hash.low64));
    key.key = text;
    return key;
}

} // namespace Vs::Translate::Shares
