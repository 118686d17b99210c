#include "Services/Itemhub/Routes/ItemRoutes.h"

#include "Services/Itemhub/Routes/Json.h"

namespace Itemhub::Routes {

namespace {

std::string etagOf(const Store::Item& item)
{
    return '"' + std::to_string(item.revision) + '"';
}

Store::Item itemOf(Call& call, qint64 id)
{
    const auto item = Store::findItem(call.store, call.account(), id);
    if (!item)
        throw Http::Problem(404, "not_found", "The item is gone.");
    return *item;
}

Http::Response answerWith(const Store::Item& item)
{
    Http::Response response = answer(toJson(item));
    response.headers.emplace_back("ETag", etagOf(item));
    return response;
}

Http::Problem stale(const Store::Item& item)
{
    return Http::Problem(412, "stale_item",
                         "The item was changed meanwhile; it has revision " + std::to_string(item.revision) +
                             " now.")
        .with("ETag", etagOf(item));
}

/// Throws unless the client knows the item's current state.
void requireMatch(const Call& call, const Store::Item& item)
{
    const std::string match = call.request.header("If-Match");
    if (match != "*" && match != etagOf(item))
        throw stale(item);
}

void link(Call& call, qint64 item, qint64 linked)
{
    const auto other = Store::aboutItem(call.store, call.tenant(), call.account(), linked);
    if (!other || other->role == Store::Role::None)
        throw Http::Problem(404, "no_linked_item",
                            "There is no item " + std::to_string(linked) + " to link to.");
    if (linked == item)
        throw Http::Problem(400, "self_link", "An item cannot link to itself.");
    if (Store::addLink(call.store, item, linked))
        call.note({.kind = "link.added", .workspace = call.subject.workspace, .item = item});
}

} // namespace

Http::Response listItems(Call& call)
{
    const Store::Page page = call.page();
    const std::string wanted = call.request.parameter("order").value_or("oldest");
    const auto order = Store::orderOf(wanted);
    if (!order)
        throw Http::Problem(400, "bad_parameter",
                            "\"order\" must be oldest, newest, changed or name, not \"" + wanted + "\".");
    return listAnswer(
        Store::itemsOf(call.reads(), call.subject.workspace, call.account(), page, *order), page, "items",
        [](const Store::Item& item) { return toJson(item); },
        [](const Store::Item& item) { return item.id; });
}

Http::Response makeItem(Call& call)
{
    Members members(call.body);
    const QString caption = members.name("caption"), description = members.text("description", {});
    const auto linked = members.number("linkedItemId", 1, INT64_MAX);
    members.end();
    return changing(call, [&] {
        const qint64 id = Store::addItem(call.store, call.tenant(), call.subject.workspace, call.account(),
                                         caption, description);
        call.note({.kind = "item.added", .workspace = call.subject.workspace, .item = id});
        if (linked)
            link(call, id, *linked);
        const Store::Item item = itemOf(call, id);
        Http::Response response = created(toJson(item), "/items/" + std::to_string(id));
        response.headers.emplace_back("ETag", etagOf(item));
        return response;
    });
}

Http::Response readItem(Call& call)
{
    const Store::Item& item = call.subject.read;
    if (call.request.header("If-None-Match") != etagOf(item))
        return answerWith(item);
    Http::Response response;
    response.status = 304;
    response.headers.emplace_back("ETag", etagOf(item));
    return response;
}

Http::Response changeItem(Call& call)
{
    if (!call.request.hasHeader("If-Match"))
        throw Http::Problem(428, "match_missing", "A change needs If-Match with the item's ETag.");
    Members members(call.body);
    const auto caption = members.optionalName("caption");
    const bool describes = members.has("description");
    const QString description = members.text("description", {});
    members.end();
    return changing(call, [&] {
        const Store::Item before = itemOf(call, call.subject.item);
        requireMatch(call, before);
        if (!Store::changeItem(call.store, call.tenant(), before.id, before.revision,
                               caption.value_or(before.caption),
                               describes ? description : before.description))
            throw stale(itemOf(call, before.id));
        call.note({.kind = "item.changed", .workspace = before.workspace, .item = before.id});
        return answerWith(itemOf(call, before.id));
    });
}

Http::Response deleteItem(Call& call)
{
    return changing(call, [&] {
        const Store::Item item = itemOf(call, call.subject.item);
        if (call.request.hasHeader("If-Match"))
            requireMatch(call, item);
        if (!Store::removeItem(call.store, call.tenant(), item.id, item.revision))
            throw stale(itemOf(call, item.id));
        call.note({.kind = "item.removed", .workspace = item.workspace, .item = item.id});
        call.audit("item removed", QString::number(item.id) + ' ' + item.caption);
        return nothing();
    });
}

Http::Response listLinks(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::linksOf(call.reads(), call.account(), call.subject.item, page), page, "items",
        [](const Store::Item& item) { return toJson(item); },
        [](const Store::Item& item) { return item.id; });
}

Http::Response makeLink(Call& call)
{
    Members members(call.body);
    const auto linked = members.number("itemId", 1, INT64_MAX);
    members.end();
    if (!linked)
        throw badMember("itemId", "is missing");
    return changing(call, [&] {
        link(call, call.subject.item, *linked);
        return nothing();
    });
}

Http::Response deleteLink(Call& call)
{
    return changing(call, [&] {
        if (!Store::removeLink(call.store, call.subject.item, call.id("linked")))
            throw Http::Problem(404, "not_found", "The item has no such link.");
        call.note({.kind = "link.removed", .workspace = call.subject.workspace, .item = call.subject.item});
        return nothing();
    });
}

Http::Response listComments(Call& call)
{
    const Store::Page page = call.page();
    return listAnswer(
        Store::commentsOf(call.reads(), call.subject.item, page), page, "comments",
        [](const Store::Comment& comment) { return toJson(comment); },
        [](const Store::Comment& comment) { return comment.id; });
}

Http::Response makeComment(Call& call)
{
    Members members(call.body);
    const QString body = members.text("body", {});
    members.end();
    if (body.isEmpty())
        throw badMember("body", "must not be empty");
    return changing(call, [&] {
        const qint64 id = Store::addComment(call.store, call.subject.item, call.account(), body);
        call.note({.kind = "comment.added", .workspace = call.subject.workspace, .item = call.subject.item});
        return created(toJson(*Store::findComment(call.store, id)), "/comments/" + std::to_string(id));
    });
}

Http::Response deleteComment(Call& call)
{
    return changing(call, [&] {
        const auto comment = Store::findComment(call.store, call.id("comment"));
        if (!comment)
            throw Http::Problem(404, "not_found", "The comment is gone.");
        if (comment->author != call.account() && call.subject.role < Store::Role::Admin)
            throw Http::Problem(403, "not_author",
                                "Only its author or an administrator may remove a comment.");
        Store::removeComment(call.store, comment->id);
        call.note(
            {.kind = "comment.removed", .workspace = call.subject.workspace, .item = call.subject.item});
        return nothing();
    });
}

} // namespace Itemhub::Routes
