#pragma once

#include "Server/DataModel/ModelDigest.h"

#include <string>

namespace Vs {
class Document;
}

namespace Vs::Recovery {

/// The journals of an open document (StepJournal), one for each recovery file that is begun. Main thread.
class DocumentJournal
{
public:
    /// For what is done from now on.
    unsigned next() const { return m_number + 1; }
    /// In the folder of the document's recovery files.
    void beginNext(const std::string& folder)
    {
        ++m_number;
        m_folder = folder;
        m_ended = false;
    }
    /// Adds what a line did to the document; an empty line ends the journal, and so do large models, which
    /// aren't examined at each step.
    void keep(const Document& document, const std::wstring& line);

private:
    unsigned m_number = 0;
    std::string m_folder;
    bool m_ended = true;
    int m_slow = 0;       ///< How many times in a row it was slow.
    BodyDigests m_bodies; ///< Of the last step.
};

} // namespace Vs::Recovery
