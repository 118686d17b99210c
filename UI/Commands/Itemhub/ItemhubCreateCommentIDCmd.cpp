#include "UI/Commands/Itemhub/ItemhubCreateCommentIDCmd.h"

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultCollaboration.h"
#include "Server/Skyvault/SkyvaultComment.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

using Def = ItemhubCreateCommentIDCmdDef;

// clang-format off
constinit const CommandRow ItemhubCreateCommentIDCmdDef::kRow = {
    .key = L"ItemhubCreateCommentID", .title = "", .titleKey = "ItemhubCreateCommentID", .icon = &Resources::CloudOpen, .arguments = {L"postID", L"postTitle", L"postUrl"}};
// clang-format on

namespace {

Vs::Metrics::TimeMetric* const theMetric = timeMetric("ItemhubCreateCommentID");

/// What the service would have to be told of the comment. Nobody sends it yet: the service's posts have no
/// field for it.
std::wstring requestFor(const std::wstring& commentId, const std::wstring& postId)
{
    return L"api?method=set_commentid&commentid=" + commentId + L"&postid=" + postId;
}

} // namespace

Info* Def::info()
{
    static Info record = itemhubInfo(kRow, "Open ", " Item...");
    return &record;
}

Def::ItemhubCreateCommentIDCmdDef() : ItemhubDefinition(info()) {}

const Vs::UniqueString* Def::postID()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("postID", true);
    return name;
}

const Vs::UniqueString* Def::postTitle()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("postTitle", true);
    return name;
}

const Vs::UniqueString* Def::postUrl()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("postUrl", true);
    return name;
}

Vs::Metrics::TimeMetric* ItemhubCreateCommentIDCmd::metric()
{
    return theMetric;
}

std::wstring ItemhubCreateCommentIDCmd::bodyFor(const std::wstring& postID, const std::wstring& title,
                                                const std::wstring& url)
{
    if (title.empty())
        return L"Post " + postID;
    return url.empty() ? title : L"<a href=\"" + url + L"\">" + title + L"</a>";
}

void ItemhubCreateCommentIDCmd::onExecute(Vs::Status&)
{
    if (!itemhubSession())
        return;
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    const DocumentSession* owner = session ? session->documentSession() : nullptr;
    const Vs::Document* document = owner ? owner->document() : nullptr;
    if (!document)
        return;
    withItemhubErrors([&] {
        const CommandContext& context = *commandContext();
        const std::wstring post = context.argumentAsString(Def::postID());
        Vs::SkyvaultComment request, result;
        request.setBody(Vs::Strings::narrow(bodyFor(post, context.argumentAsString(Def::postTitle()),
                                                    context.argumentAsString(Def::postUrl()))));
        std::wstring error;
        if (!Vs::SkyvaultCollaboration::createComment(Vs::MeshportAuth::globalInstance(), document, request,
                                                      result, error))
            return;
        if (!result.commentId().empty())
            static_cast<void>(requestFor(Vs::Strings::widen(result.commentId()), post));
    });
}

} // namespace Vu::Commands
