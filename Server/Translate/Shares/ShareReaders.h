#pragma once

#include "Server/DataModel/Exchange/WorkerProtocol.h"
#include "Server/DataModel/Model/FileMapping.h"
#include "Server/Translate/Reading.h"
#include "Server/Translate/Shares/ShareResult.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate::Shares {

class ShareBoard;

/// Processes that read a STEP file's shares. One divides the file and starts a reader for each share, several
/// at once; it stays behind its own wall, which lets it start processes, and never touches what the kernel
/// made from a file. The readers are behind the same wall as the worker that owns this object.
///
/// A share whose reader dies or hangs is read again: without its unsound content, then each item separately.
class ShareReaders : public Helpers
{
public:
    /// Null if the file is too small to be divided, or dividing it is of no use, for example with one
    /// processor. The environment variable QUILLET_SHARES, "never" or "always", overrides this.
    static std::shared_ptr<ShareReaders> start(const std::string& path, const Help& help);
    /// Whether they can read a file.
    static bool concern(const std::string& path);
    ~ShareReaders() override;
    ShareReaders(const ShareReaders&) = delete;
    ShareReaders& operator=(const ShareReaders&) = delete;

    /// Waits until the file is divided; false if it must be read as a whole.
    bool waitForPlan();
    /// The file without its shares; see SharePlan::structure.
    std::string_view structure() const { return m_structure->bytes(); }

    /// Returns the content of the next share as soon as it exists, and reports the progress of all meanwhile.
    /// False at the end; then `isComplete` tells whether there is a result for each.
    bool next(std::vector<ShareResult>& results, const std::function<void(double)>& progress);
    /// False if the file must be read as a whole after all.
    bool isComplete() const { return m_isComplete; }

private:
    ShareReaders() = default;
    std::optional<Exchange::WorkerMessage> receive(const std::function<void(double)>& progress);

    int m_pipe = -1;
    std::vector<int> m_files; ///< Without names: the structure's, then one for each share.
    std::unique_ptr<ShareBoard> m_board;
    Exchange::WorkerMessageReader m_reader;
    std::shared_ptr<const FileMapping> m_structure;
    size_t m_open = 0; ///< Shares that haven't arrived yet.
    bool m_isComplete = false;
};

} // namespace Vs::Translate::Shares
