#include "Services/Itemhub/Routes/Form.h"

#include <QUrlQuery>

namespace Itemhub::Routes {

Field formOf(Call& call)
{
    constexpr size_t kLongest = 64UL * 1024;
    if (!call.request.header("Content-Type").starts_with("application/x-www-form-urlencoded"))
        throw Http::Problem(415, "bad_type",
                            "The request's body must be of the type application/x-www-form-urlencoded.");
    QString text = QString::fromStdString(call.request.body(kLongest));
    const QUrlQuery query(text.replace('+', "%20"));
    return [query](const char* name) { return query.queryItemValue(name, QUrl::FullyDecoded); };
}

} // namespace Itemhub::Routes
