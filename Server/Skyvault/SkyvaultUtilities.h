#pragma once

#include "Server/Network/CloudErrorState.h"
#include "Server/Skyvault/SkyvaultNodeData.h"

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vs {

/// Operations of the cloud drive. Each returns with the server's answer; meanwhile the window lives, progress
/// is shown, and Esc cancels. Paths are local ones in the cache unless they are said to be identifiers. Main
/// thread only.
class SkyvaultUtilities
{
public:
    using WPath = boost::filesystem::path;

    /// The drive's trade name, the same in every language.
    static std::wstring getCloud_TM();
    /// What the state means for a person, completed by what is known of the last failure of that state.
    static std::wstring getErrorString(CloudErrorState state);
    static std::wstring getErrorString(int state)
    {
        return getErrorString(static_cast<CloudErrorState>(state));
    }
    /// Why a file of the cache isn't opened as a local one.
    static std::wstring msgErrorOpenCloudLocal();

    /// Makes a folder on this machine, with those above it.
    static bool checkLocalFolders(const WPath& folder);
    /// The root of the signed-in user's cache: each drive and user has a folder of its own.
    static WPath currentCachePath(const BaseAuth* auth);
    /// The names that lead from `root` to `path`; false if it doesn't lie there.
    static bool getRelativeStack(const WPath& root, const WPath& path, std::vector<WPath>& stack);
    /// Makes the folders on the drive, and reads the last one into `node`.
    static bool ensureCloudPath(const BaseAuth* auth, const std::vector<WPath>& stack,
                                SkyvaultNodeData& node);

    /// Reads a folder of the drive with its children. Unreachable or Cancelled, `node` is what the cache
    /// knows of it: files that have been on this computer, and the folders that lead to such.
    static CloudErrorState GetFolderNode(const BaseAuth* auth, const std::string& id, SkyvaultNodeData& node);
    /// The node of a path in the cache. One that the drive doesn't have is NotFound.
    static CloudErrorState GetFileNode(const BaseAuth* auth, const WPath& root, const WPath& path,
                                       SkyvaultNodeData& node);

    /// A new file in the folder `parentId`.
    static CloudErrorState SaveDocumentToCloud(const BaseAuth* auth, const std::string& parentId,
                                               const WPath& path, const std::string& name,
                                               const std::vector<std::string>& properties,
                                               SkyvaultNodeData& result);
    /// A new version of the file `nodeId`. What the cache has never seen is kept first.
    static CloudErrorState SaveVersionToCloud(const BaseAuth* auth, const std::string& nodeId,
                                              const WPath& path, const std::string& name,
                                              const std::vector<std::string>& properties,
                                              SkyvaultNodeData& result);
    /// Saves what was refused as Changed as a new file beside the other's, "name (user date)". The local file
    /// is then the copy's, at `copy`; the other's version is fetched when somebody opens it.
    static CloudErrorState SaveConflictCopy(const BaseAuth* auth, const WPath& path, WPath& copy,
                                            SkyvaultNodeData& result);
    /// Brings the node's file into the cache; `path` is where it lies then. With `replace`, what lies there
    /// goes, unless it waits to be uploaded.
    static CloudErrorState DownloadToCacheById(const BaseAuth* auth, SkyvaultNodeData& node, WPath& path,
                                               bool replace);

    /// A remark on a file, by its identifier; `commentId` as Drive::comment.
    static CloudErrorState Comment(const BaseAuth* auth, const std::string& id, const std::string& text,
                                   std::string& commentId);

    /// What happened on the drive lately; zero limits ask for none.
    static CloudErrorState GetActivities(const BaseAuth* auth, const std::vector<std::string>& ids,
                                         const std::string& from, const std::string& to, int first, int count,
                                         std::vector<SkyvaultNodeData>& activities);
};

} // namespace Vs
