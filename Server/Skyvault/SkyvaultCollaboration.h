#pragma once

#include <string>

namespace Vs {

class Document;
class MeshportAuth;
class SkyvaultComment;

/// What people tell each other about files of the cloud drive. Main thread only.
class SkyvaultCollaboration
{
public:
    /// Posts `request` as a comment on a document of the drive: into the server's comments where it has such,
    /// else as a property of the file. On success `result` is the comment as the server keeps it; otherwise
    /// `error` says for the person why there is none.
    static bool createComment(MeshportAuth* auth, const Document* document, SkyvaultComment& request,
                              SkyvaultComment& result, std::wstring& error);
};

} // namespace Vs
