#include "Server/Base/MessageCatalogue.h"

#include "Server/Base/Exception.h"

#include <boost/filesystem/fstream.hpp>

#include <bit>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace Vs {

namespace {

constexpr std::uint32_t kMagic = 0x950412de;
constexpr std::uint32_t kSwappedMagic = 0xde120495;
constexpr char kContextEnd = '\4'; ///< Between the context and the message in a catalogue's keys.

/// Reads the numbers and texts of a catalogue; throws where they point outside of it.
class Reader
{
public:
    explicit Reader(std::string_view content) : m_content(content)
    {
        const std::uint32_t magic = number(0);
        if (magic != kMagic && magic != kSwappedMagic)
            throw Exception("it is no compiled catalogue");
        m_swapped = magic == kSwappedMagic;
    }

    std::uint32_t number(size_t offset) const
    {
        if (offset > m_content.size() || m_content.size() - offset < 4)
            throw Exception("it is cut short");
        std::uint32_t value;
        std::memcpy(&value, m_content.data() + offset, 4);
        return m_swapped ? __builtin_bswap32(value) : value;
    }

    /// The i-th text of the table at `table`.
    std::string_view text(size_t table, size_t i) const
    {
        const size_t length = number(table + 8 * i), offset = number(table + 8 * i + 4);
        if (offset > m_content.size() || m_content.size() - offset < length)
            throw Exception("it is cut short");
        return m_content.substr(offset, length);
    }

private:
    std::string_view m_content;
    bool m_swapped = false;
};

} // namespace

MessageCatalogue::MessageCatalogue(const boost::filesystem::path& file)
{
    boost::filesystem::ifstream stream(file, std::ios::binary);
    m_content.assign(std::istreambuf_iterator<char>(stream), {});
    try {
        const Reader reader(m_content);
        const size_t count = reader.number(8), originals = reader.number(12),
                     translations = reader.number(16);
        for (size_t i = 0; i < count; ++i)
            m_messages.emplace(reader.text(originals, i), reader.text(translations, i));
    } catch (const Exception& error) {
        throw Exception("The texts in " + file.string() + " cannot be read: " + error.what() + '.');
    }
}

std::string_view MessageCatalogue::find(std::string_view context, std::string_view text) const
{
    std::string key;
    key.reserve(context.size() + text.size() + 1);
    key.append(context).push_back(kContextEnd);
    key.append(text);
    const auto found = m_messages.find(key);
    return found == m_messages.end() ? std::string_view() : found->second;
}

} // namespace Vs
