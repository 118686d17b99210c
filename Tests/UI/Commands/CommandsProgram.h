#pragma once

#include "Server/Base/TextCommand.h"
#include "UI/Base/Program/MessageBox.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace Vs {
class Document;
}
namespace Vu {
class AssetSession;
class CommandDefinition;
} // namespace Vu

namespace CommandsTests {

/// Every test begins and ends with the add-ins loaded, a workspace, no document, and nobody to answer a
/// message box or a file dialog.
class WithProgram : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Runs a line as a script would and finishes what it left in the queues.
    static Vs::TextCommandResult run(const std::wstring& line);
    /// The answer of a line that must succeed.
    static std::wstring answer(const std::wstring& line);
    /// The reason of a line that must fail.
    static std::wstring failure(const std::wstring& line);

    static unsigned documents();
    /// Null if none is open.
    static Vs::Document* activeDocument();
    static Vu::AssetSession* activeSession();

    static Vu::CommandDefinition* definition(const std::wstring& id);
    /// Whether the command could run now.
    static bool applicable(const std::wstring& id);

    /// Answers every message box with this button and remembers the texts.
    void answerBoxes(int button);
    const std::vector<std::wstring>& boxes() const { return m_boxes; }

    /// A folder for this test's files.
    static std::wstring scratch(const std::wstring& name);
    /// Creates a folder within that one, without anything from an earlier test.
    static void emptyScratch(const std::wstring& name);

private:
    std::vector<std::wstring> m_boxes;
};

} // namespace CommandsTests
