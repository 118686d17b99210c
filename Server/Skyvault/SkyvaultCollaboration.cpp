#include "Server/Skyvault/SkyvaultCollaboration.h"

#include "Server/Base/Strings.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultComment.h"
#include "Server/Skyvault/SkyvaultUtilities.h"

namespace Vs {

CloudErrorState SkyvaultCollaboration::createComment(const BaseAuth* auth, SkyvaultComment& comment)
{
    if (!auth || !auth->isLoggedIn())
        return CloudErrorState::LoginFailed;
    const CloudErrorState state =
        SkyvaultUtilities::Comment(auth, comment.nodeId(), Strings::narrow(comment.text()));
    std::wstring name;
    if (state == CloudErrorState::Success && auth->userName(name))
        comment.author(std::move(name));
    return state;
}

} // namespace Vs
