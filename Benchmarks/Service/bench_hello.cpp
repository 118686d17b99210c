// A server that says hello, with the HTTP library of the service and nothing else; it prints its port.

#include <cstdio>
#include <httplib.h>

int main()
{
    httplib::Server server;
    server.set_tcp_nodelay(true);
    server.set_keep_alive_max_count(1'000'000);
    server.Get("/hello", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("{\"hello\":\"world\"}", "application/json");
    });
    std::printf("%d\n", server.bind_to_any_port("127.0.0.1"));
    std::fflush(stdout);
    server.listen_after_bind();
}
