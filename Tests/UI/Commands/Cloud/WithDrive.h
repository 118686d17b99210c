#pragma once

#include "Server/Skyvault/CloudEvents.h"
#include "Server/Skyvault/SkyvaultNodeData.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/UI/Commands/CommandsProgram.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <string>
#include <vector>

namespace CommandsTests {

/// A real server with an empty drive, and an unused cache.
class WithDrive : public WithProgram, public Vs::CloudEventSite
{
protected:
    explicit WithDrive(TestSupport::TestServer::Kind kind = TestSupport::TestServer::Kind::Lighttpd);
    void SetUp() override;
    void TearDown() override;

    void signIn();
    /// Where a file of the drive is, or would be, in the cache.
    static boost::filesystem::path cached(const std::string& id);
    /// A text line followed by the file's path.
    static std::wstring line(const wchar_t* command, const boost::filesystem::path& file);
    /// Creates a model and saves it to the drive.
    void saveNew(const std::string& id);
    /// A change of the shown document.
    static void change();

    /// The drive's content of it; empty if none.
    std::string onDrive(const std::string& id) const;
    /// Written by someone else's program.
    void writeByAnother(const std::string& id, const std::string& content) const;
    /// Runs the main loop until `holds`, or gives up after a while.
    static bool waitUntil(const std::function<bool()>& holds);

    static Vs::SkyvaultNodeData folder(const std::string& id);
    const std::vector<std::wstring>& conflicts() const { return m_conflicts; }

    void cloudFileConflicted(Vs::CloudEvent* event) override { m_conflicts.push_back(event->text()); }

    TestSupport::TestServer m_server;

private:
    std::vector<std::wstring> m_conflicts;
};

} // namespace CommandsTests
