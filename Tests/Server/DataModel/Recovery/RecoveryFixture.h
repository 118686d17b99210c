#pragma once

#include "Tests/Support/Process.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// Runs of a program that keeps recovery files (RecoveryProbe), all with one profile.
class RecoveryTest : public testing::Test
{
protected:
    using Steps = std::vector<std::string>;

    /// The program that runs.
    static std::string probe();
    /// Runs to the end, or until the steps kill it.
    TestSupport::ProcessResult run(const Steps& steps) const;
    /// The same for a run that must reach its end; returns its reports, line by line.
    std::vector<std::string> finished(const Steps& steps) const;
    /// What a new run is offered: the lines of "list".
    std::vector<std::string> offered() const;
    /// The last of these lines that begins with the word; empty if there is none.
    static std::string lastOf(const std::string& output, const std::string& word);
    static std::vector<std::string> linesOf(const std::string& output, const std::string& word);
    /// All files below the recovery folder except locks, by their path in it.
    std::vector<std::string> files() const;
    std::string recoveryFolder() const { return profile() + "/recovery"; }
    std::string profile() const { return (folder.path() / "profile").string(); }
    std::string scratch(const std::string& name) const { return (folder.path() / name).string(); }

    TestSupport::ScratchFolder folder;
};
