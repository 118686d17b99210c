#pragma once

#include <string>
#include <vector>

/// The lines that follow a recovery file: steps made since it was begun, until the next one exists. They are
/// next to it in numbered files, of which the recovery file names the first (RecoveryRecord::steps). They
/// survive the death of the run, but needn't be on the disk. Paths are bytes.
namespace Vs::Recovery::StepJournal {

struct Step
{
    std::wstring line;                ///< Empty for a step that no line can repeat.
    std::vector<std::string> digests; ///< Of the document after it (digestsOf).
};

/// Adds a step to the file of that number. False if it couldn't be kept.
bool append(const std::string& folder, unsigned number, const Step& step);
/// The steps from that number on, up to one that no line can repeat, or one that is incomplete.
[[nodiscard]] std::vector<Step> read(const std::string& folder, unsigned first);
/// Removes the files before that number.
void removeBefore(const std::string& folder, unsigned number);
[[nodiscard]] bool isJournal(const std::string& fileName);

} // namespace Vs::Recovery::StepJournal
