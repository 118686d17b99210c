#pragma once

#include "Server/DataModel/Recovery/Private/RecoveryRecord.h"

#include <string>

namespace Vs::Recovery {

/// Reads a recovery file through: its structure, its models and the checksums of all that is in it.
struct RecoveryCheck
{
    enum class Answer {
        Sound,
        Damaged,
        Strange ///< None that this program could have written: it is left alone.
    };
    Answer answer = Answer::Strange;
    RecoveryRecord record; ///< Of a sound one.

    [[nodiscard]] static RecoveryCheck of(const std::string& path);
};

} // namespace Vs::Recovery
