#pragma once

#include "Server/Network/CloudErrorState.h"
#include "Server/Skyvault/SkyvaultNodeData.h"

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vs {

/// Operations of the cloud drive. Each returns with the server's response; meanwhile the window stays
/// responsive, progress is shown, and Esc cancels. Paths are local ones in the cache unless stated to be
/// identifiers. Main thread only.
class SkyvaultUtilities
{
public:
    using WPath = boost::filesystem::path;

    /// The drive's trade name, the same in every language.
    static std::wstring getCloud_TM();
    /// The meaning of the state for the user, completed by details of the last failure with that state.
    static std::wstring getErrorString(CloudErrorState state);
    static std::wstring getErrorString(int state)
    {
        return getErrorString(static_cast<CloudErrorState>(state));
    }
    /// Why a file of the cache isn't opened as a local one.
    static std::wstring msgErrorOpenCloudLocal();

    /// Creates a folder on this machine, with its parents.
    static bool checkLocalFolders(const WPath& folder);
    /// The root of the signed-in user's cache: each drive and user has a separate folder.
    static WPath currentCachePath(const BaseAuth* auth);
    /// The names that lead from `root` to `path`; false if it isn't in there.
    static bool getRelativeStack(const WPath& root, const WPath& path, std::vector<WPath>& stack);
    /// Creates the folders on the drive, and reads the last one into `node`.
    static bool ensureCloudPath(const BaseAuth* auth, const std::vector<WPath>& stack,
                                SkyvaultNodeData& node);

    /// Reads a folder of the drive with its children. On Unreachable or Cancelled, `node` is what the cache
    /// knows about it: files that have been on this computer, and the folders that lead to them.
    static CloudErrorState GetFolderNode(const BaseAuth* auth, const std::string& id, SkyvaultNodeData& node);
    /// The node of a path in the cache. One that the drive doesn't have is NotFound.
    static CloudErrorState GetFileNode(const BaseAuth* auth, const WPath& root, const WPath& path,
                                       SkyvaultNodeData& node);

    /// A new file in the folder `parentId`.
    static CloudErrorState SaveDocumentToCloud(const BaseAuth* auth, const std::string& parentId,
                                               const WPath& path, const std::string& name,
                                               const std::vector<std::string>& properties,
                                               SkyvaultNodeData& result);
    /// A new version of the file `nodeId`. A version that the cache has never seen is preserved first.
    static CloudErrorState SaveVersionToCloud(const BaseAuth* auth, const std::string& nodeId,
                                              const WPath& path, const std::string& name,
                                              const std::vector<std::string>& properties,
                                              SkyvaultNodeData& result);
    /// Saves what was refused as Changed as a new file beside the other one, "name (user date)". The local
    /// file is then the copy's, at `copy`; the other version is downloaded when somebody opens it.
    static CloudErrorState SaveConflictCopy(const BaseAuth* auth, const WPath& path, WPath& copy,
                                            SkyvaultNodeData& result);
    /// Downloads the node's file to the cache; `path` is where it is then. With `replace`, an existing file
    /// is replaced, unless it is waiting to be uploaded.
    static CloudErrorState DownloadToCacheById(const BaseAuth* auth, SkyvaultNodeData& node, WPath& path,
                                               bool replace);

    /// A remark on a file, given by identifier; `commentId` as in Drive::comment.
    static CloudErrorState Comment(const BaseAuth* auth, const std::string& id, const std::string& text,
                                   std::string& commentId);

    /// Recent activities on the drive; zero limits ask for none.
    static CloudErrorState GetActivities(const BaseAuth* auth, const std::vector<std::string>& ids,
                                         const std::string& from, const std::string& to, int first, int count,
                                         std::vector<SkyvaultNodeData>& activities);
};

} // namespace Vs
