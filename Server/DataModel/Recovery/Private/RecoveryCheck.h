#pragma once

#include "Server/DataModel/Recovery/Private/RecoveryRecord.h"

#include <string>
#include <string_view>

namespace Vs::Recovery {

/// What is known of a recovery file once it was read.
struct RecoveryCheck
{
    enum class Answer {
        Sound,
        Doubtful, ///< Whole, but it couldn't be opened, or as another document than was written.
        Damaged,
        Strange ///< None that this program could have written, or breaks down over: it is left alone.
    };
    Answer answer = Answer::Strange;
    RecoveryRecord record; ///< Of one that can be opened.

    [[nodiscard]] bool canBeOpened() const { return answer == Answer::Sound || answer == Answer::Doubtful; }

    /// Reads a file through: its structure, its models and the checksums of all that is in it.
    [[nodiscard]] static RecoveryCheck of(const std::string& path);
    /// The same, and opens it as a document whose models are compared with those that were written. For a
    /// process of its own, which may break down over the file: it comes to know document types of that name.
    [[nodiscard]] static RecoveryCheck byOpening(const std::string& path);

    /// As a text that `read` takes, which makes Damaged of what it doesn't understand.
    [[nodiscard]] std::string write() const;
    [[nodiscard]] static RecoveryCheck read(std::string_view text);
};

} // namespace Vs::Recovery
