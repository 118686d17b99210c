#include "Services/Itemhub/Http/Client.h"

#include <httplib.h>
#include <stdexcept>

namespace Itemhub::Http {

namespace {

constexpr size_t kLongest = 256UL * 1024;
constexpr time_t kSeconds = 10;

/// The server part of an address, and the rest.
std::pair<std::string, std::string> split(const std::string& url)
{
    const size_t authority = url.find("//");
    const size_t path = authority == std::string::npos ? authority : url.find('/', authority + 2);
    if (path == std::string::npos)
        return {url, "/"};
    return {url.substr(0, path), url.substr(path)};
}

Reply ask(const std::string& url, httplib::Request& request)
{
    const auto [server, path] = split(url);
    httplib::Client client(server);
    client.set_connection_timeout(kSeconds);
    client.set_read_timeout(kSeconds);
    client.set_write_timeout(kSeconds);
    client.enable_server_certificate_verification(true);
    Reply reply;
    request.path = path;
    request.headers.emplace("Accept", "application/json");
    request.content_receiver = [&reply](const char* data, size_t size, uint64_t, uint64_t) {
        reply.body.append(data, std::min(size, kLongest - reply.body.size()));
        return reply.body.size() < kLongest;
    };
    const httplib::Result result = client.send(request);
    if (!result && reply.body.size() < kLongest)
        throw std::runtime_error(url + " does not answer: " + httplib::to_string(result.error()));
    reply.status = result ? result->status : 0;
    return reply;
}

} // namespace

Reply get(const std::string& url, const std::string& bearer)
{
    httplib::Request request;
    request.method = "GET";
    if (!bearer.empty())
        request.headers.emplace("Authorization", "Bearer " + bearer);
    return ask(url, request);
}

Reply post(const std::string& url, const std::vector<std::pair<std::string, std::string>>& form,
           const std::string& user, const std::string& password)
{
    httplib::Request request;
    request.method = "POST";
    request.headers.emplace(httplib::make_basic_authentication_header(user, password));
    request.headers.emplace("Content-Type", "application/x-www-form-urlencoded");
    request.body = httplib::detail::params_to_query_str(httplib::Params(form.begin(), form.end()));
    return ask(url, request);
}

} // namespace Itemhub::Http
