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

/// A real server with an empty drive, and a cache that nobody has used.
class WithDrive : public WithProgram, public Vs::CloudEventSite
{
protected:
    explicit WithDrive(TestSupport::TestServer::Kind kind = TestSupport::TestServer::Kind::Lighttpd);
    void SetUp() override;
    void TearDown() override;

    void signIn();
    /// Where a file of the drive lies, or would lie, in the cache.
    static boost::filesystem::path cached(const std::string& id);
    /// A line of text with the file's path behind it.
    static std::wstring line(const wchar_t* command, const boost::filesystem::path& file);
    /// Makes a model and saves it to the drive.
    void saveNew(const std::string& id);
    /// A change of the shown document.
    static void change();

    /// What the drive has of it; empty if nothing.
    std::string onDrive(const std::string& id) const;
    /// Another's program writes it.
    void writeByAnother(const std::string& id, const std::string& content) const;
    /// Turns the main loop until `holds`, or gives up after a while.
    static bool waitUntil(const std::function<bool()>& holds);

    static Vs::SkyvaultNodeData folder(const std::string& id);
    const std::vector<std::wstring>& conflicts() const { return m_conflicts; }

    void cloudFileConflicted(Vs::CloudEvent* event) override { m_conflicts.push_back(event->text()); }

    TestSupport::TestServer m_server;

private:
    std::vector<std::wstring> m_conflicts;
};

} // namespace CommandsTests
