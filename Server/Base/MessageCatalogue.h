#pragma once

#include <boost/filesystem/path.hpp>

#include <string>
#include <string_view>
#include <unordered_map>

namespace Vs {

/// The translations of one compiled gettext catalogue (a .mo file).
class MessageCatalogue
{
public:
    /// Throws Vs::Exception that names the file when it cannot be read or is no catalogue.
    explicit MessageCatalogue(const boost::filesystem::path& file);
    MessageCatalogue(const MessageCatalogue&) = delete;
    MessageCatalogue& operator=(const MessageCatalogue&) = delete;

    /// The translation of `text` under `context`; empty if there is none.
    std::string_view find(std::string_view context, std::string_view text) const;

private:
    std::string m_content;
    std::unordered_map<std::string_view, std::string_view> m_messages; ///< Views into the content.
};

} // namespace Vs
