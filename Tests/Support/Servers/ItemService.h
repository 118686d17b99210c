#pragma once

#include "Tests/Support/Servers/FaultProxy.h"
#include "Tests/Support/Users.h"

#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace TestSupport {

/// The real lifecycle service on this machine, with one customer, "acme", and one workspace, 1, behind a
/// proxy that disturbs what a test says. It runs as a user who may do nothing in particular. Throws
/// std::runtime_error if it can't be had.
class ItemService
{
public:
    ItemService();
    ~ItemService();
    ItemService(const ItemService&) = delete;
    ItemService& operator=(const ItemService&) = delete;

    FaultProxy& proxy() { return *m_proxy; }
    /// By which clients reach it, with a slash at the end; it stays the same through stop and start.
    std::string address() const { return m_proxy->address(); }

    void stop(int signal = 15);
    void start();

    /// A command of "quillet-itemhub admin"; its output without the last line feed.
    std::string admin(const std::vector<std::string>& words, const std::string& input = {}) const;
    /// A token of an account with that role, which is made if it isn't there.
    std::string token(const std::string& account, const std::string& role,
                      const std::string& customer = "acme", const std::string& scope = "admin") const;
    static const std::string& password();
    /// What somebody with that account does with the sign-in page at an address, and the browser then: the
    /// last page it shows. Any thread.
    static std::string signInWithBrowser(const std::string& page, const std::string& account);

private:
    std::string program() const;

    OpenFolder m_folder;
    std::string m_configuration;
    int m_port;
    std::unique_ptr<FaultProxy> m_proxy;
    pid_t m_process = -1;
};

} // namespace TestSupport
