#include "Services/Itemhub/Routes/ServiceRoutes.h"

#include "Services/Itemhub/Routes/Json.h"

#include <QFile>

namespace Itemhub::Routes {

Http::Response describeService(Call&)
{
    return answer({{"name", "itemhub"}, {"version", ITEMHUB_VERSION}, {"description", "/openapi.yaml"}});
}

Http::Response tellHealth(Call& call)
{
    call.service.database.dialect().requireSame();
    (void)Store::lastSerial(call.store);
    return answer({{"status", "ok"}});
}

Http::Response describeInterface(Call&)
{
    QFile file(":/openapi.yaml");
    if (!file.open(QIODevice::ReadOnly))
        throw Http::Problem(404, "not_found", "The description is missing.");
    Http::Response response;
    response.type = "application/yaml";
    response.body = file.readAll().toStdString();
    return response;
}

} // namespace Itemhub::Routes
