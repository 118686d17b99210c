#pragma once

#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"

#include <boost/filesystem/path.hpp>

namespace CommandsTests {

/// Transcripts in a folder of their own, played in this process, and what their lines answered. Every test
/// ends with the references' usual mode.
class Transcribed : public WithProgram, private Vs::TextOutput
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Plays the lines as the transcript of that name; goes on after a line that failed. The answers of all
    /// lines.
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
