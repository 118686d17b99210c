// Files that one start hands over to the window of another. The windows are those of Qt's offscreen platform:
// the communication between the processes needs no display.

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <chrono>
#include <csignal>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace fs = boost::filesystem;

namespace {

constexpr unsigned kNobody = 65534;

class HandOverTest : public testing::Test
{
protected:
    ~HandOverTest() override { endWindow(SIGKILL); }

    std::string profile(const std::string& name) const { return (folder.path() / name).string(); }
    fs::path sockets() const { return folder.path() / "runtime" / "quillet"; }
    std::vector<fs::path> socketsThere() const
    {
        std::vector<fs::path> found;
        boost::system::error_code none;
        for (fs::directory_iterator each(sockets(), none), end; each != end; ++each)
            if (each->path().filename().string().starts_with("window-"))
                found.push_back(each->path());
        return found;
    }

    TestSupport::ProcessResult run(std::vector<std::string> arguments, bool window = false) const
    {
        TestSupport::ProcessOptions options;
        options.environment = {"XDG_RUNTIME_DIR=" + (folder.path() / "runtime").string(),
                               window ? "DISPLAY=:none" : "DISPLAY=", "WAYLAND_DISPLAY=",
                               "QT_QPA_PLATFORM=offscreen", "DBUS_SESSION_BUS_ADDRESS="};
        options.secondsLimit = 300;
        return TestSupport::runProcess((TestSupport::runningTree() / "bin/quillet").string(), arguments,
                                       options);
    }

    static bool becomes(const std::function<bool()>& condition)
    {
        for (int i = 0; i < 3000 && !condition(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return condition();
    }

    /// Returns once others can hand files over to it.
    void startWindow()
    {
        const fs::path note = folder.path() / "pid";
        fs::remove(note);
        const fs::path script = folder.write("note.py", "import os\nopen('" + note.string() +
                                                            "', 'w').write(str(os.getpid()))\n");
        m_window = std::thread([this, script] {
            run({"--no-autorun", "--profile-dir", profile("own"), "--script", script.string()}, true);
        });
        ASSERT_TRUE(becomes([&] { return fs::exists(note) && fs::file_size(note) > 0; }));
        fs::ifstream(note) >> m_pid;
        ASSERT_TRUE(becomes([&] { return !socketsThere().empty(); }));
    }
    void endWindow(int signal)
    {
        if (m_pid > 0)
            kill(m_pid, signal);
        m_pid = 0;
        if (m_window.joinable())
            m_window.join();
    }
    void signal(int number) const { kill(m_pid, number); }

    /// Whether the files went to a window; otherwise the start continues on its own, here without a display.
    bool handedOver(const std::string& file, const std::string& profileName = "own") const
    {
        const TestSupport::ProcessResult result =
            run({"--no-autorun", "--profile-dir", profile(profileName), "--hand-over", file});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result.errors.find("this run is headless") == std::string::npos;
    }

    /// Whether a window is working on the document: it leaves a note beside the file.
    bool opened(const std::string& file) const
    {
        const std::string name = fs::path(file).stem().string();
        for (const fs::path& path : fs::directory_iterator(folder.path()))
            if (path != file && path.filename().string().find(name) != std::string::npos)
                return true;
        return false;
    }

    /// A file in the program's own format.
    std::string document(const std::string& name) const
    {
        const std::string file = (folder.path() / name).string();
        const TestSupport::ProcessResult made =
            run({"--headless", "--no-autorun", "--profile-dir", profile("maker"), "--command", "Design.New",
                 "--command", "Document.SaveAs \"" + file + '"'});
        EXPECT_EQ(made.exitCode, 0) << made.errors;
        return file;
    }

    static int connectTo(const fs::path& path)
    {
        const int made = socket(AF_UNIX, SOCK_STREAM, 0);
        const sockaddr_un address = addressOf(path);
        EXPECT_EQ(connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return made;
    }
    static sockaddr_un addressOf(const fs::path& path)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        return address;
    }

    void SetUp() override
    {
        fs::create_directories(folder.path() / "runtime");
        fs::permissions(folder.path() / "runtime", fs::owner_all);
    }

    TestSupport::ScratchFolder folder;

private:
    std::thread m_window;
    pid_t m_pid = 0;
};

} // namespace

TEST_F(HandOverTest, FilesGoToTheWindowOfTheProfileAndAnyNonsenseDoesNotStopIt)
{
    const std::string name = "a b\xc3\xa9.vlra";
    const std::string file = document(name);
    EXPECT_FALSE(handedOver(file)) << "no window is running";
    startWindow();
    ASSERT_EQ(socketsThere().size(), 1u);
    EXPECT_EQ(fs::status(sockets()).permissions(), fs::owner_all);
    EXPECT_EQ(fs::status(socketsThere().front()).permissions() & fs::perms(0077), fs::no_perms);
    for (const std::string& nonsense :
         {std::string("GET / HTTP/1.0\r\n\r\n"), std::string("quillet-files 1 99999999999\n"),
          std::string("quillet-files 1 4\nab\0c", 21), std::string("quillet-files 1 3\n\0x\0", 21),
          std::string("quillet-files 1 "), std::string(3 * 1024 * 1024, 'x')}) {
        const int connection = connectTo(socketsThere().front());
        std::ignore = send(connection, nonsense.data(), nonsense.size(), MSG_NOSIGNAL);
        close(connection);
    }
    EXPECT_FALSE(handedOver(file, "other")) << "a window with other settings";
    EXPECT_TRUE(handedOver("quillet:ticket/none")) << "a link goes there, too; what it is, the window tells";
    EXPECT_FALSE(opened(file));
    EXPECT_TRUE(handedOver(file));
    EXPECT_TRUE(becomes([&] { return opened(file); }));
    EXPECT_TRUE(handedOver("/no/such/file.vlra")) << "the window tells what is wrong with it";
}

TEST_F(HandOverTest, AWindowThatDoesNotAnswerIsLeftAloneAndADeadOnesSocketGoes)
{
    startWindow();
    const std::string late = document("late.vlra");
    const std::string next = document("next.vlra");
    signal(SIGSTOP);
    EXPECT_FALSE(handedOver(late));
    signal(SIGCONT);
    EXPECT_TRUE(handedOver(next));
    EXPECT_TRUE(becomes([&] { return opened(next); }));
    EXPECT_FALSE(opened(late));
    endWindow(SIGKILL);
    ASSERT_EQ(socketsThere().size(), 1u);
    EXPECT_FALSE(handedOver(next));
    EXPECT_TRUE(socketsThere().empty());
}

TEST_F(HandOverTest, NothingIsHandedToAnotherUser)
{
    if (getuid() != 0)
        GTEST_SKIP() << "NOTICE: only root can make what belongs to others";
    startWindow();
    const fs::path own = socketsThere().front();
    const std::string file = document("mine.vlra");
    endWindow(SIGTERM);
    fs::remove(own);
    const int listening = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
    const sockaddr_un address = addressOf(own);
    ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listening, 1), 0);
    ASSERT_EQ(chown(own.c_str(), kNobody, kNobody), 0);
    EXPECT_FALSE(handedOver(file));
    EXPECT_LT(accept(listening, nullptr, nullptr), 0) << "nobody even asked";
    // Nor is anything found in a folder that others can write to.
    ASSERT_EQ(chown(own.c_str(), 0, 0), 0);
    fs::permissions(sockets(), fs::all_all);
    ASSERT_EQ(chown(sockets().c_str(), kNobody, kNobody), 0);
    EXPECT_FALSE(handedOver(file));
    EXPECT_LT(accept(listening, nullptr, nullptr), 0);
    close(listening);
}
