#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

namespace Vs {

/// One domain's texts in one language, from a gettext catalogue. Reading them takes libraries that a run in
/// English doesn't need, so it is in a library of its own. Private to StringTable.
class Catalogue
{
public:
    virtual ~Catalogue() = default;

    /// Null if there is no translation. The text is the catalogue's.
    virtual const char* find(const char* context, const char* text) = 0;
};

} // namespace Vs

/// The caller owns the catalogue; a missing one has no translations, and neither has a damaged one, which
/// causes a warning. `folder` holds those of all languages.
extern "C" Vs::Catalogue* vsOpenCatalogue(const boost::filesystem::path& folder, const std::string& language,
                                          const std::string& domain);
