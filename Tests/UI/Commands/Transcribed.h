#pragma once

#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"

#include <boost/filesystem/path.hpp>

namespace CommandsTests {

/// Transcripts in a folder of their own, replayed in this process, and the answers of their lines. Every test
/// ends with the references' usual mode.
class Transcribed : public WithProgram, private Vs::TextOutput
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Replays the lines as the transcript of that name; continues after a failed line. Returns the answers
    /// of all lines.
    const std::wstring& replay(const std::string& lines, const std::string& name = "bracket.txt");
    /// How many lines of the last replay failed.
    size_t failures() const { return m_failures; }

    /// A file of the folder.
    static boost::filesystem::path file(const std::string& name);

private:
    void message(const std::wstring& text) override { m_answers += text + L'\n'; }
    void error(const std::wstring& text) override { m_answers += L"error: " + text + L'\n'; }

    std::wstring m_answers;
    size_t m_failures = 0;
};

} // namespace CommandsTests
