#include "Server/Translate/Shares/StepScan.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace Vs::Translate::Shares {

namespace {

constexpr uint32_t kLargestNumber = 2'000'000'000;
constexpr uint32_t kNone = std::numeric_limits<uint32_t>::max();
constexpr uint32_t kLongest = uint32_t(1) << 30;

bool isBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

/// By their codes: most of a file are letters and digits, of which each is looked at just once.
constexpr auto kSigns = [] {
    std::array<bool, 256> signs{};
    for (const char c : {' ', '\n', '\r', '\t', '\'', '"', '/', '#', '=', ';'})
        signs[static_cast<unsigned char>(c)] = true;
    return signs;
}();

} // namespace

size_t nextSign(std::string_view text, size_t at)
{
    while (at < text.size() && !kSigns[static_cast<unsigned char>(text[at])])
        ++at;
    return at;
}

/// Goes through the file from left to right.
class StepScan::Cutter
{
public:
    explicit Cutter(StepScan& scan) : m_scan(scan), m_text(scan.m_file) {}

    bool cut()
    {
        if (!takeHead())
            return false;
        for (skip(); m_at < m_text.size() && m_text[m_at] == '#'; skip())
            if (!takeStatement())
                return false;
        const std::string_view rest = m_text.substr(m_at);
        if (!rest.starts_with("ENDSEC"))
            return false;
        // One section, and the end.
        const size_t end = rest.find("END-ISO-10303-21;");
        return end != rest.npos && rest.substr(0, end).find("DATA") == rest.npos;
    }

private:
    bool takeHead()
    {
        // Anchor or reference sections may precede the data; they are rare.
        size_t at = m_text.find("ENDSEC;");
        if (!m_text.starts_with("ISO-10303-21;") || at == m_text.npos)
            return false;
        m_at = at + std::strlen("ENDSEC;");
        skip();
        if (!m_text.substr(m_at).starts_with("DATA;"))
            return false;
        m_at += std::strlen("DATA;");
        m_scan.m_head = m_text.substr(0, m_at);
        return true;
    }

    void skip()
    {
        for (;;) {
            while (m_at < m_text.size() && isBlank(m_text[m_at]))
                ++m_at;
            if (m_text.substr(m_at, 2) != "/*")
                return;
            const size_t end = m_text.find("*/", m_at + 2);
            m_at = end == m_text.npos ? m_text.size() : end + 2;
        }
    }

    /// The number after a "#"; 0 if there is none.
    uint32_t takeNumber()
    {
        uint64_t number = 0;
        const size_t begin = ++m_at;
        constexpr size_t kDigits = 10;
        for (; m_at < m_text.size() && m_text[m_at] >= '0' && m_text[m_at] <= '9'; ++m_at)
            number = number * 10 + static_cast<uint64_t>(m_text[m_at] - '0');
        return m_at - begin > kDigits || number > kLargestNumber ? 0 : static_cast<uint32_t>(number);
    }

    bool takeStatement()
    {
        Statement one{m_at, 0, 0, 0, m_scan.m_references.size()};
        one.number = takeNumber();
        skip();
        if (one.number == 0 || m_at >= m_text.size() || m_text[m_at] != '=')
            return false;
        one.begin = ++m_at;
        for (m_at = nextSign(m_text, m_at); m_at < m_text.size(); m_at = nextSign(m_text, m_at + 1)) {
            switch (m_text[m_at]) {
            case '\'':
            case '"':
                m_at = m_text.find(m_text[m_at], m_at + 1);
                if (m_at == m_text.npos)
                    return false;
                break;
            case '/':
                if (m_text.substr(m_at, 2) == "/*") {
                    m_at = m_text.find("*/", m_at + 2);
                    if (m_at == m_text.npos)
                        return false;
                    ++m_at;
                }
                break;
            case '#':
                if (const uint32_t number = takeNumber(); number > 0)
                    m_scan.m_references.push_back(number);
                else
                    return false;
                --m_at;
                break;
            case '=':
                return false;
            case ';':
                if (m_at - one.begin > kLongest)
                    return false;
                one.size = static_cast<uint32_t>(m_at - one.begin);
                m_scan.m_statements.push_back(one);
                m_scan.m_largest = std::max(m_scan.m_largest, one.number);
                ++m_at;
                return true;
            default:
                break;
            }
        }
        return false;
    }

    StepScan& m_scan;
    std::string_view m_text;
    size_t m_at = 0;
};

std::optional<StepScan> StepScan::of(std::string_view file)
{
    StepScan scan;
    scan.m_file = file;
    if (!Cutter(scan).cut() || !scan.resolve())
        return std::nullopt;
    return scan;
}

bool StepScan::resolve()
{
    // Writers number from 1. For one that doesn't, the table would be larger than the file.
    constexpr size_t kSparse = 64;
    if (m_statements.size() >= kNone || m_largest / kSparse > m_statements.size())
        return false;
    std::vector<uint32_t> places(size_t(m_largest) + 1, kNone);
    for (size_t i = 0; i < m_statements.size(); ++i) {
        uint32_t& place = places[m_statements[i].number];
        if (place != kNone)
            return false;
        place = static_cast<uint32_t>(i);
    }
    for (uint32_t& reference : m_references) {
        reference = reference > m_largest ? kNone : places[reference];
        if (reference == kNone)
            return false;
    }
    return true;
}

std::string_view StepScan::entity(size_t i) const
{
    const std::string_view text = StepScan::text(i);
    const auto isInName = [](char c) { return (c >= 'A' && c <= 'Z') || c == '_' || (c >= '0' && c <= '9'); };
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    return {begin, std::find_if_not(begin, text.end(), isInName)};
}

} // namespace Vs::Translate::Shares
