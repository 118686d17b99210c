#pragma once

#include "Server/Skyvault/CloudErrorState.h"

namespace Vs {

class BaseAuth;
class SkyvaultComment;

/// What people tell each other about files of the cloud drive. Main thread only.
class SkyvaultCollaboration
{
public:
    /// Posts a comment: into the server's comments where it has such, else as a property of the file. A
    /// server that has neither answers with Unsupported. On success the comment has its author.
    static CloudErrorState createComment(const BaseAuth* auth, SkyvaultComment& comment);
};

} // namespace Vs
