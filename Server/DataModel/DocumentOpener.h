#pragma once

#include "Server/Base/Status.h"

#include <boost/filesystem/path.hpp>

#include <vector>

namespace Vs {

class Document;

/// Opens several files at once. They are read in parallel: foreign files each by a worker of its own, native
/// ones by threads.
class DocumentOpener
{
public:
    explicit DocumentOpener(std::vector<boost::filesystem::path> paths) : m_paths(std::move(paths)) {}

    /// Begins to read a foreign file that will be opened soon in some way, while the program is still
    /// starting. Reports no errors: opening does. Main thread.
    static void expect(const boost::filesystem::path& path);

    /// A failure with one file adds its error to the status and doesn't affect the others. Option 1 is the
    /// normal way; 0 stops at the first error.
    void open(Status& status, int option);

    /// The documents that were opened, in the order of the paths.
    unsigned documentsOpened() const { return static_cast<unsigned>(m_opened.size()); }
    Document* documentOpened(unsigned index) const { return m_opened.at(index); }

private:
    std::vector<boost::filesystem::path> m_paths;
    std::vector<Document*> m_opened;
};

} // namespace Vs
