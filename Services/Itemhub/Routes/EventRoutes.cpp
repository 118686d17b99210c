#include "Services/Itemhub/Routes/EventRoutes.h"

#include "Services/Itemhub/Routes/Json.h"

#include <QJsonDocument>

#include <algorithm>

namespace Itemhub::Routes {

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kBeat = 15s; ///< The interval of a stream's keep-alive messages.

/// Waits for events that the caller may see.
std::vector<Store::Event> wait(Service& service, const Store::TokenRecord& caller, const Store::Page& page,
                               milliseconds time)
{
    const auto end = steady_clock::now() + time;
    for (qint64 seen = page.after;;) {
        const qint64 last = Store::lastSerial(service.database.connection());
        auto events = Store::eventsAfter(service.database.connection(), caller.tenant, caller.account, page);
        const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
        if (!events.empty() || left <= 0ms)
            return events;
        // What came meanwhile was for others; only something newer is worth another query.
        seen = std::max(seen, last);
        if (service.events.waitBeyond(seen, left) <= seen)
            return events;
    }
}

std::string lineOf(const Store::Event& event)
{
    return "id: " + std::to_string(event.serial) + "\nevent: " + event.kind.toStdString() +
           "\ndata: " + QJsonDocument(toJson(event)).toJson(QJsonDocument::Compact).toStdString() + "\n\n";
}

/// Whether the token is still valid: a stream may stay open for days.
bool stillHolds(Service& service, const Store::TokenRecord& caller)
{
    const auto token = Store::findToken(service.database.connection(), caller.selector);
    return token && !token->disabled && token->expiresAt > Store::now();
}

Http::Response streamOf(Call& call, Store::Page page)
{
    auto place = std::make_shared<EventWatch::Place>(call.service.events);
    if (!*place)
        throw Http::Problem(503, "too_many_listeners", "Too many clients listen already.")
            .with("Retry-After", "30");
    if (const std::string last = call.request.header("Last-Event-ID"); !last.empty())
        page.after = std::max<qint64>(0, std::atoll(last.c_str()));
    Http::Response response;
    response.type = "text/event-stream";
    // The comment makes proxies forward the head at once.
    response.stream = [&service = call.service, caller = call.caller, page, place,
                       begun = false](const Http::Response::Write& write) mutable {
        if (!std::exchange(begun, true))
            return write(":\n\n");
        if (!stillHolds(service, caller))
            return false;
        const auto events = wait(service, caller, page, kBeat);
        std::string text = events.empty() ? ":\n\n" : "";
        for (const Store::Event& event : events) {
            text += lineOf(event);
            page.after = event.serial;
        }
        return write(text);
    };
    return response;
}

/// The events after a serial, or after everything there is now.
Store::Page pageOf(Call& call)
{
    if (call.request.parameter("after") != "now")
        return call.page();
    constexpr qint64 kUsual = 100, kMost = 500;
    return {Store::lastSerial(call.store), call.queryNumber("limit", kUsual, 1, kMost)};
}

} // namespace

Http::Response listen(Call& call)
{
    constexpr qint64 kLongestWait = 60;
    const Store::Page page = pageOf(call);
    if (call.request.header("Accept").find("text/event-stream") != std::string::npos)
        return streamOf(call, page);
    const milliseconds time(1000 * call.queryNumber("wait", 0, 0, kLongestWait));
    const EventWatch::Place place(call.service.events);
    const auto events = wait(call.service, call.caller, page, place ? time : 0ms);
    QJsonArray array;
    for (const Store::Event& event : events)
        array.append(toJson(event));
    return answer({{"events", array}, {"next", events.empty() ? page.after : events.back().serial}});
}

} // namespace Itemhub::Routes
