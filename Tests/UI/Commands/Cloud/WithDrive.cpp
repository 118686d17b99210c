#include "Tests/UI/Commands/Cloud/WithDrive.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "Tests/Support/Files.h"
#include "UI/Base/Program/Application.h"
#include "UI/Commands/Cloud/CloudDialog.h"

#include <boost/filesystem/operations.hpp>

#include <chrono>
#include <thread>

namespace CommandsTests {

namespace fs = boost::filesystem;

WithDrive::WithDrive(TestSupport::TestServer::Kind kind) : m_server(kind) {}

void WithDrive::SetUp()
{
    WithProgram::SetUp();
    REQUIRE_SERVER(m_server);
    Vs::CloudEventSource::get()->subscribe(this);
    signIn();
}

void WithDrive::TearDown()
{
    Vu::Commands::CloudDialog::responder(nullptr);
    Vs::CloudEventSource::get()->unsubscribe(this);
    WithProgram::TearDown();
    EXPECT_TRUE(Vs::MeshportAuth::globalInstance()->logout());
    fs::remove_all(Vs::PathInfo::cloudCacheDirectory());
}

void WithDrive::signIn()
{
    const Vs::Cloud::DriveCredentials credentials{
        Vs::Cloud::DriveCredentials::Kind::Password, m_server.user(), m_server.password(), {}};
    const Vs::Cloud::DriveResult result =
        Vs::MeshportAuth::globalInstance()->signIn(m_server.address(), credentials, false);
    ASSERT_TRUE(result.isOk()) << static_cast<int>(result.state) << ' ' << result.detail;
}

fs::path WithDrive::cached(const std::string& id)
{
    return Vs::SkyvaultNodeData(id, Vs::SkyvaultNodeData::fileKind())
        .cachePath(Vs::MeshportAuth::globalInstance());
}

std::wstring WithDrive::line(const wchar_t* command, const fs::path& file)
{
    return L"VuCommands." + std::wstring(command) + L' ' + Vs::Strings::quote(file.wstring());
}

void WithDrive::saveNew(const std::string& id)
{
    answer(L"Design.New");
    answer(L"Design.Box 1 2 3");
    answer(line(L"CloudSaveCmd", cached(id)));
}

void WithDrive::change()
{
    answer(L"Design.Box 4 5 6");
}

std::string WithDrive::onDrive(const std::string& id) const
{
    return m_server.content(id.substr(1)).value_or(std::string());
}

void WithDrive::writeByAnother(const std::string& id, const std::string& content) const
{
    const int status = m_server.request("PUT", id.substr(1), content).status;
    ASSERT_TRUE(status == 201 || status == 204) << status;
}

bool WithDrive::waitUntil(const std::function<bool()>& holds)
{
    using Clock = std::chrono::steady_clock;
    for (const auto start = Clock::now(); !holds();
         std::this_thread::sleep_for(std::chrono::milliseconds(5))) {
        if (Clock::now() - start > std::chrono::seconds(30))
            return false;
        Vu::Application::get()->processEvents();
        Vu::Application::get()->flushDeferredTasks();
    }
    return true;
}

Vs::SkyvaultNodeData WithDrive::folder(const std::string& id)
{
    Vs::SkyvaultNodeData node;
    EXPECT_EQ(Vs::SkyvaultUtilities::GetFolderNode(Vs::MeshportAuth::globalInstance(), id, node),
              Vs::CloudErrorState::Success);
    return node;
}

} // namespace CommandsTests
