#include "Server/Skyvault/SkyvaultCollaboration.h"

#include "Server/DataModel/Document.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultComment.h"
#include "Server/Skyvault/SkyvaultUtilities.h"

namespace Vs {
namespace {

CloudErrorState post(const MeshportAuth* auth, const Document* document, const std::string& body,
                     std::string& id)
{
    if (!auth || !auth->isLoggedIn())
        return CloudErrorState::LoginFailed;
    if (!document || !document->isCloud())
        return CloudErrorState::OutsideCache;
    return SkyvaultUtilities::Comment(auth, document->cloudId(), body, id);
}

} // namespace

bool SkyvaultCollaboration::createComment(MeshportAuth* auth, const Document* document,
                                          SkyvaultComment& request, SkyvaultComment& result,
                                          std::wstring& error)
{
    std::string id;
    const CloudErrorState state = post(auth, document, request.body(), id);
    if (state != CloudErrorState::Success) {
        error = SkyvaultUtilities::getErrorString(state);
        return false;
    }
    result = request;
    result.setCommentId(id);
    if (std::wstring name; auth->userName(name))
        result.setAuthor(std::move(name));
    return true;
}

} // namespace Vs
