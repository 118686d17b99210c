#pragma once

#include "Server/DataModel/Recovery/Private/RecoveryRecord.h"

#include <string>
#include <string_view>

namespace Vs::Recovery {

/// What is known about a recovery file once it was read.
struct RecoveryCheck
{
    enum class Answer {
        Sound,
        Doubtful, ///< Whole, but it couldn't be opened, or opened as another document than was written.
        Damaged,
        Strange ///< Not one that this program could have written, or one that crashes it: it is left alone.
    };
    Answer answer = Answer::Strange;
    RecoveryRecord record; ///< For one that can be opened.

    [[nodiscard]] bool canBeOpened() const { return answer == Answer::Sound || answer == Answer::Doubtful; }

    /// Reads a file completely: its structure, its models and the checksums of everything in it.
    [[nodiscard]] static RecoveryCheck of(const std::string& path);
    /// The same, and opens it as a document whose models are compared with those that were written. For a
    /// separate process, which may crash on the file: it registers document types of that name.
    [[nodiscard]] static RecoveryCheck byOpening(const std::string& path);

    /// As a text for `read`, which returns Damaged for what it doesn't understand.
    [[nodiscard]] std::string write() const;
    [[nodiscard]] static RecoveryCheck read(std::string_view text);
};

} // namespace Vs::Recovery
