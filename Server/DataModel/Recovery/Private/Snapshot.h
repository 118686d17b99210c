#pragma once

#include "Server/DataModel/Native/FileCalls.h"
#include "Server/DataModel/Recovery/Private/RecoveryRecord.h"

#include <string>

namespace Vs {
class Document;
}

namespace Vs::Recovery {

/// One recovery file to be written: what is gathered from the document while the process is whole.
struct Snapshot
{
    const Document* document = nullptr;
    std::string folder; ///< Of the document's recovery files, as bytes; it exists.
    std::string name;   ///< With the suffix.
    std::string picture;
    RecoveryRecord record; ///< Without what must be read or computed, which is left to the child.

    /// Creates the folder below that of the session. Throws std::exception. Main thread.
    /// `steps` is the journal of what will be done from now on.
    static Snapshot of(const Document& document, const std::string& sessionFolder, unsigned steps);

    std::string path() const { return folder + '/' + name; }
    /// Writes the file, reads it back, moves the existing one to the previous generation and takes its place.
    /// Whatever fails, the last good one stays. Throws std::exception. Main thread, or a forked child.
    void write(Native::FileCalls& calls) const;

private:
    RecoveryRecord wholeRecord() const;
    void setOlderAside(Native::FileCalls& calls) const;
};

} // namespace Vs::Recovery
