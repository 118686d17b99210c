#include "Services/Itemhub/Routes/FindRoutes.h"

#include "Services/Itemhub/Routes/Json.h"
#include "Services/Itemhub/Store/Search.h"

namespace Itemhub::Routes {

namespace {

Http::Response itemsAnswer(const std::vector<Store::Item>& items)
{
    QJsonArray array;
    for (const Store::Item& item : items)
        array.append(toJson(item));
    return answer({{"items", array}});
}

Http::Response setFavourite(Call& call, bool favourite)
{
    return changing(call, [&] {
        if (Store::setFavourite(call.store, call.account(), call.subject.item, favourite))
            call.note({.kind = favourite ? "favourite.added" : "favourite.removed",
                       .workspace = call.subject.workspace,
                       .item = call.subject.item,
                       .forSelf = true});
        return nothing();
    });
}

} // namespace

Http::Response searchItems(Call& call)
{
    constexpr qint64 kUsual = 20, kMost = 100;
    constexpr size_t kLongest = 200;
    const std::string text = call.request.parameter("q").value_or("");
    if (text.size() > kLongest)
        throw Http::Problem(400, "bad_parameter",
                            "\"q\" must not be longer than " + std::to_string(kLongest) + " bytes.");
    return itemsAnswer(Store::search(call.reads(), call.tenant(), call.account(),
                                     QString::fromStdString(text),
                                     call.queryNumber("limit", kUsual, 1, kMost)));
}

Http::Response listFavourites(Call& call)
{
    constexpr qint64 kUsual = 100, kMost = 500;
    return itemsAnswer(
        Store::favouritesOf(call.reads(), call.account(), call.queryNumber("limit", kUsual, 1, kMost)));
}

Http::Response addFavourite(Call& call)
{
    return setFavourite(call, true);
}

Http::Response removeFavourite(Call& call)
{
    return setFavourite(call, false);
}

} // namespace Itemhub::Routes
