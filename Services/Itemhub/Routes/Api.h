#pragma once

#include "Services/Itemhub/Http/Message.h"
#include "Services/Itemhub/Routes/Service.h"

namespace Itemhub::Routes {

/// Answers requests: finds the route, sees to it that who asks may have it, and turns failures into answers.
/// Thread-safe.
class Api
{
public:
    explicit Api(Service& service) : m_service(service) {}

    [[nodiscard]] Http::Response answer(Http::Request& request);

private:
    /// While it answers, the thread keeps its connection to the database.
    [[nodiscard]] Http::Response answerKeeping(Http::Request& request);
    [[nodiscard]] Http::Response dispatch(Http::Request& request);

    Service& m_service;
};

} // namespace Itemhub::Routes
