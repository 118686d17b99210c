#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

namespace Vu {

/// Reads what commands tell about themselves beyond their tooltips: longer descriptions for the tooltips'
/// second paragraph, from `ExtendedInfo.xml` in a resource folder:
///
///     <extendedInfo> <command id="FitCommand" key="FitCommandExtended">Frames everything ...</command>
///     </extendedInfo>
class ExtendedInfoLoader
{
public:
    ExtendedInfoLoader(boost::filesystem::path folder, std::wstring domain);

    /// False if there is a file that cannot be read; no file at all is fine.
    bool load();

    /// The extended text of a command, or empty.
    [[nodiscard]] static std::wstring text(const std::wstring& command);

private:
    boost::filesystem::path m_folder;
    std::wstring m_domain;
};

} // namespace Vu
