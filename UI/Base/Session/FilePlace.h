#pragma once

#include <boost/filesystem/path.hpp>

#include <functional>
#include <optional>
#include <string>

namespace Vs {
class ImageSetResource;
}

namespace Vu {

/// Where a file that a service keeps is, in an add-in's words: the local paths are those of copies in the
/// profile, which mean nothing to a person. Tiles, questions and notifications show the place instead.
/// Registered for as long as it lives. Main thread only.
class FilePlace
{
public:
    struct Answer
    {
        std::wstring place;                         ///< "Skyvault \u203a parts \u203a wheel.vlra".
        std::wstring folder;                        ///< Beside the file's name: "Skyvault \u203a parts".
        const Vs::ImageSetResource* mark = nullptr; ///< Of the service, for a tile; null for none.
        /// Whether a save is over only when it has arrived there, which whoever registered this announces.
        bool isSent = false;
        /// The service has reported that it no longer exists there; the local copy is all that is left.
        bool isGone = false;
    };
    /// Nothing for a file that isn't the add-in's. Asked often, for any path.
    using Source = std::function<std::optional<Answer>(const boost::filesystem::path& file)>;

    explicit FilePlace(Source source);
    ~FilePlace();
    FilePlace(const FilePlace&) = delete;
    FilePlace& operator=(const FilePlace&) = delete;

    /// Nothing for a file that is where its path says, and for an empty path.
    [[nodiscard]] static std::optional<Answer> of(const std::wstring& path);
    /// The place, or the path itself for other files.
    [[nodiscard]] static std::wstring shown(const std::wstring& path);

private:
    Source m_source;
};

} // namespace Vu
