#pragma once

#include <string>

namespace Vs {

class Document;
class MeshportAuth;
class SkyvaultComment;

/// Comments on files of the cloud drive. Main thread only.
class SkyvaultCollaboration
{
public:
    /// Posts `request` as a comment on a document of the drive: to the server's comments if it has any,
    /// otherwise as a property of the file. On success `result` is the comment as stored by the server;
    /// otherwise `error` tells the user why there is none.
    static bool createComment(MeshportAuth* auth, const Document* document, SkyvaultComment& request,
                              SkyvaultComment& result, std::wstring& error);
};

} // namespace Vs
