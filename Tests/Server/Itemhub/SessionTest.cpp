// Signing in and out, in each way that the service offers, and everything that a service may refuse.

#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Tests/Server/Itemhub/Fixture.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <arpa/inet.h>
#include <atomic>
#include <cctype>
#include <csignal>
#include <fcntl.h>
#include <future>
#include <sstream>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

using TestSupport::Fault;
using TestSupport::FaultProxy;
using Kind = Corvane::Itemstore::WebServices::ItemhubException::Kind;
namespace fs = boost::filesystem;

/// The process that this one has started as its service; 0 if there is none.
pid_t ownService()
{
    for (const auto& entry : fs::directory_iterator("/proc")) {
        if (!std::isdigit(static_cast<unsigned char>(entry.path().filename().string()[0])))
            continue;
        std::istringstream status(TestSupport::contentOf(entry.path() / "stat"));
        pid_t process = 0, parent = 0;
        std::string name, state;
        if (status >> process >> name >> state >> parent && parent == getpid() && state != "Z" &&
            TestSupport::contentOf(entry.path() / "cmdline").find("--local") != std::string::npos)
            return process;
    }
    return 0;
}

class SessionTest : public ItemhubTest
{
protected:
    /// Like the dashboard's line.
    bool byToken(const std::string& uri, const std::string& token, const std::string& secret = {},
                 const std::string& handle = {}, const std::string& key = {},
                 const std::string& consumerSecret = {})
    {
        const auto wide = [](const std::string& text) { return Vs::Strings::widen(text); };
        return hub().authenticateWithToken(uri, L"", wide(token), wide(secret), wide(handle), wide(key),
                                           wide(consumerSecret));
    }
};

TEST_F(SessionTest, NobodyIsSignedInUntilATokenIsTaken)
{
    EXPECT_FALSE(hub().isAuthenticated());
    EXPECT_EQ(hub().downloadAttachment(L"https://example.org/attachments/1.xml"), L"");
    EXPECT_EQ(kindOf([] { std::ignore = hub().getWorkspaceById(1); }), Kind::NotSignedIn);
    EXPECT_EQ(kindOf([] { std::ignore = newItem(L"Wheel"); }), Kind::NotSignedIn);
    EXPECT_TRUE(hub().getFavorites().empty());
    EXPECT_EQ(errors.size(), 1u) << "the list says why it's empty";

    const std::string token = service().token(account(), "writer");
    EXPECT_TRUE(byToken(service().address() + "?customer=acme", token));
    EXPECT_EQ(authenticated, 1);
    EXPECT_EQ(hub().accountName(), Vs::Strings::widen(account()));
    EXPECT_EQ(hub().customer(), L"acme");
    EXPECT_FALSE(hub().isKept());
    EXPECT_EQ(hub().getWorkspaceById(1).name(), "Designs");
    hub().signOut();
    EXPECT_FALSE(hub().isAuthenticated());
    EXPECT_EQ(hub().accountName(), L"");
}

TEST_F(SessionTest, NothingOfTheNetworkIsMappedBeforeTheFirstSignIn)
{
    const TestSupport::ScratchFolder profile;
    const auto result = TestSupport::runProcess(QUILLET_ITEM_CLIENT, {profile.path().string(), "maps"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "");
}

TEST_F(SessionTest, NoProgramThatIsStartedGetsAConnection)
{
    signIn();
    int connections = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        const int descriptor = std::stoi(entry.path().filename().string());
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) != 0 ||
            peer.sin_family != AF_INET || ntohs(peer.sin_port) != service().proxy().port())
            continue;
        ++connections;
        EXPECT_TRUE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
    }
    EXPECT_GT(connections, 0);
}

TEST_F(SessionTest, AWrongTokenLeavesTheSessionAndSaysWhereAndWhy)
{
    signIn();
    const std::string foreign = [this] {
        service().admin({"customer", "add", "other" + account()});
        return service().token("eve", "admin", "other" + account());
    }();
    const std::string address = service().address() + "?customer=acme";
    EXPECT_FALSE(byToken(address, "nonsense"));
    EXPECT_FALSE(byToken(address, foreign)) << "of another customer";
    EXPECT_FALSE(byToken(address, ""));
    EXPECT_FALSE(byToken("http://items.example.org/", "t")) << "others could listen";
    EXPECT_FALSE(byToken("ftp://127.0.0.1/", "t"));
    EXPECT_FALSE(byToken("", "t"));
    EXPECT_FALSE(byToken("http://127.0.0.1:1/", "t")) << "nothing answers there";
    ASSERT_EQ(errors.size(), 7u);
    for (const std::wstring& error : errors)
        EXPECT_EQ(error.find(L"nonsense"), std::wstring::npos) << "no secret stands in a message";
    EXPECT_NE(errors[0].find(L"127.0.0.1"), std::wstring::npos);
    EXPECT_EQ(hub().accountName(), Vs::Strings::widen(account()));
    EXPECT_EQ(authenticated, 1);

    // One that the service ends meanwhile is refused from then on.
    service().admin({"account", "disable", "acme", account()});
    EXPECT_EQ(kindOf([] { std::ignore = hub().getWorkspaces(); }), Kind::NotSignedIn);
}

TEST_F(SessionTest, SignedRequestsAreTakenAndTheirTokensRenewed)
{
    const std::string ignored = service().token(account(), "writer");
    const std::string consumer = service().admin({"consumer", "add", "acme", "Dashboard"});
    const auto value = [](const std::string& text, const std::string& name) {
        const size_t at = text.find(name + ' ');
        EXPECT_NE(at, std::string::npos) << text;
        const size_t begin = at + name.size() + 1;
        return text.substr(begin, text.find('\n', begin) - begin);
    };
    const std::string given = service().admin(
        {"token", "add-signed", "acme", account(), value(consumer, "consumerKey"), "writer", "1"});
    const auto sign = [&](const std::string& consumerSecret) {
        return byToken(service().address() + "?customer=acme", value(given, "token"),
                       value(given, "tokenSecret"), value(given, "sessionHandle"),
                       value(consumer, "consumerKey"), consumerSecret);
    };
    EXPECT_FALSE(sign("wrong"));
    ASSERT_TRUE(sign(value(consumer, "consumerSecret"))) << Vs::Strings::narrow(errors.back());
    // With letters that signatures encode, and a list whose query has several parameters.
    EXPECT_TRUE(hub().search(L"caf\u00e9 & +100% ~*").empty());
    EXPECT_EQ(hub().getWorkspaces().size(), 1u);

    // The service no longer accepts the token: the session handle gets another one, once.
    int refused = 0, renewals = 0;
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        renewals += request.target.find("/oauth/access_token") != std::string::npos;
        if (request.target.find("/workspaces") != std::string::npos && refused++ == 0)
            return Fault::answer(401,
                                 R"({"status": 401, "code": "token_expired", "detail": "It has expired."})",
                                 {"Content-Type: application/problem+json"});
        return std::nullopt;
    });
    EXPECT_EQ(hub().getWorkspaces().size(), 1u);
    EXPECT_EQ(hub().getWorkspaces().size(), 1u);
    EXPECT_EQ(renewals, 1);
}

TEST_F(SessionTest, APasswordGivesATokenThatEndsWithTheSession)
{
    std::ignore = service().token(account(), "writer");
    const auto sign = [this](const std::string& password) {
        return hub().signInWithPassword(service().address(), "acme", account(), password, false);
    };
    EXPECT_EQ(kindOf([&] { sign("guess"); }), Kind::NotSignedIn);
    EXPECT_FALSE(hub().isAuthenticated());
    std::string seen;
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (const auto header = request.headers.find("authorization"); header != request.headers.end())
            seen = header->second;
        return std::nullopt;
    });
    ASSERT_TRUE(sign(TestSupport::ItemService::password()));
    hub().signOut();
    const std::string token = seen.substr(seen.find(' ') + 1);
    EXPECT_EQ(kindOf([&] { hub().signIn(access(token), false); }), Kind::NotSignedIn);
}

TEST_F(SessionTest, ABrowserGivesATokenThatEndsWithTheSession)
{
    std::ignore = service().token(account(), "writer");
    std::string seen;
    bool hasPage = true;
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        if (const auto header = request.headers.find("authorization"); header != request.headers.end())
            seen = header->second;
        return hasPage || request.target.find("/.well-known/") == std::string::npos
                   ? std::nullopt
                   : std::optional(Fault::answer(404));
    });
    std::future<std::string> shown;
    const auto open = [&, here = std::this_thread::get_id()](const std::string& address) {
        EXPECT_EQ(std::this_thread::get_id(), here) << "a window tells what fails in it";
        shown = std::async(std::launch::async, [this, address] {
            return TestSupport::ItemService::signInWithBrowser(address, account());
        });
        return true;
    };
    ASSERT_TRUE(hub().signInByBrowser(service().address(), "acme", false, open));
    const std::string page = shown.get();
    EXPECT_NE(page.find("You can close this page"), std::string::npos) << page;
    EXPECT_EQ(hub().accountName(), Vs::Strings::widen(account()));
    EXPECT_EQ(hub().getWorkspaces().size(), 1u);
    hub().signOut();
    const std::string token = seen.substr(seen.find(' ') + 1);
    EXPECT_EQ(kindOf([&] { hub().signIn(access(token), false); }), Kind::NotSignedIn);

    const auto nobody = [](const std::string&) { return false; };
    const auto without = [&] { hub().signInByBrowser(service().address(), "acme", false, nobody); };
    EXPECT_EQ(kindOf(without), Kind::NotSignedIn) << "no browser could be opened";
    hasPage = false;
    EXPECT_EQ(kindOf(without), Kind::NotFound) << "the service has no page for that";
}

TEST_F(SessionTest, SwitchedOffNobodySignsIn)
{
    Vs::ItemhubOptionGroup::get()->itemhubDisabled(true);
    EXPECT_TRUE(hub().ItemhubDisabled());
    EXPECT_FALSE(byToken(service().address(), "t"));
    EXPECT_FALSE(hub().resume());
    EXPECT_EQ(kindOf([] { hub().signInToOwnService(); }), Kind::Disabled);
    Vs::ItemhubOptionGroup::get()->itemhubDisabled(false);
    Vs::ItemhubUtilities::editionDisables([] { return true; });
    EXPECT_TRUE(hub().ItemhubDisabled());
    Vs::ItemhubUtilities::editionDisables({});
    EXPECT_FALSE(hub().ItemhubDisabled());
}

TEST_F(SessionTest, TheProgramsOwnServiceKeepsWhatWasMadeAndIsStartedAnewWhenItEnds)
{
    ASSERT_TRUE(hub().signInToOwnService());
    EXPECT_TRUE(hub().isOwnService());
    EXPECT_TRUE(hub().isKept());
    EXPECT_EQ(hub().serviceAddress(), "");
    const Path file = newItem(L"Mine");
    save(file, "content");
    ASSERT_TRUE(arrive());
    const std::string uri = attachmentOf(file).uri();
    hub().signOut();
    ASSERT_FALSE(hub().resume()) << "signing out is for the next run, too";
    ASSERT_TRUE(hub().signInToOwnService());
    // Its port is now another one, and so is the address in what was stored.
    EXPECT_EQ(Path(hub().downloadAttachment(Vs::Strings::widen(uri) + L".xml")), file);
    ASSERT_EQ(versionsOf(file).size(), 1u);
    EXPECT_EQ(fs::status(Vs::ItemhubUtilities::folder()).permissions() & fs::others_all, fs::no_perms);

    // Killing it loses nothing.
    ASSERT_GT(ownService(), 0);
    kill(ownService(), SIGKILL);
    EXPECT_TRUE(until([&] {
        try {
            return !hub().getWorkspaces().empty();
        } catch (const std::exception&) {
            return false;
        }
    }));
    Vs::ItemhubOptionGroup::get()->ownService(false);
}

TEST_F(SessionTest, AKeptTokenIsInTheKeyringAloneAndGoesOnWithoutTheService)
{
    for (const char* program : {"/usr/bin/gnome-keyring-daemon", "/usr/bin/dbus-run-session"})
        if (!fs::exists(program))
            GTEST_SKIP() << "NOTICE: not installed: " << program;
    const std::string token = service().token(account(), "writer");
    const TestSupport::OpenFolder home;
    fs::permissions(home.path(), fs::all_all);
    // The service is down when it is asked for the third time who is signed in.
    std::atomic<int> sessions = 0;
    service().proxy().onRequest([&](const FaultProxy::Request& request) -> std::optional<Fault> {
        const bool asksWho = request.target.find("/session") != std::string::npos;
        return asksWho && ++sessions > 2 && sessions < 5 ? std::optional(Fault::reset()) : std::nullopt;
    });
    const std::string folder = home.path().string(),
                      client = std::string(QUILLET_ITEM_CLIENT " ") + folder + "/profile ";
    const auto result = TestSupport::runProcess(
        QUILLET_TEST_SUPPORT "/as_plain_user.sh",
        {"env", "HOME=" + folder, "XDG_RUNTIME_DIR=" + folder + "/run", "XDG_DATA_HOME=" + folder + "/data",
         "XDG_CONFIG_HOME=" + folder + "/config", "XDG_CACHE_HOME=" + folder + "/cache",
         "DISPLAY=", "WAYLAND_DISPLAY=", "dbus-run-session", "--", "sh", "-c",
         "mkdir -m 700 \"$XDG_RUNTIME_DIR\"; printf secret | gnome-keyring-daemon --unlock "
         "--components=secrets "
         ">/dev/null 2>&1; " +
             client + "keep " + service().address() + ' ' + token + "; " + client + "resume; " + client +
             "resume; grep -rlF " + token + ' ' + folder + "; " + client + "leave; " + client + "resume"},
        {.secondsLimit = 60});
    EXPECT_EQ(result.output, account() + " kept online\n" + account() + " kept online\n" + account() +
                                 " kept\nnobody\nnobody\n")
        << result.errors;
}

} // namespace
