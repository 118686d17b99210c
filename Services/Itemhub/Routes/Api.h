#pragma once

#include "Services/Itemhub/Http/Message.h"
#include "Services/Itemhub/Routes/Service.h"

namespace Itemhub::Routes {

/// Answers requests: finds the route, checks that the caller may use it, and turns failures into responses.
/// Thread-safe.
class Api
{
public:
    explicit Api(Service& service) : m_service(service) {}

    [[nodiscard]] Http::Response answer(Http::Request& request);

private:
    /// The thread keeps its database connection until the request is answered.
    [[nodiscard]] Http::Response answerKeeping(Http::Request& request);
    [[nodiscard]] Http::Response dispatch(Http::Request& request);

    Service& m_service;
};

} // namespace Itemhub::Routes
