#pragma once

#include "Server/Translate/Reading.h"

#include <TopoDS_TShape.hxx>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs::Translate::Salvage {

/// The numbers, in the file, of the faces that were read.
using FaceNumbers = std::unordered_map<const TopoDS_TShape*, uint32_t>;

/// How faces of one format are tried.
struct FaceTrial
{
    /// The numbers of the faces in a file's content.
    std::vector<uint32_t> (*faces)(std::string_view file) = nullptr;
    /// Reads the content without some of the faces; false if it can't be read.
    bool (*read)(std::string_view file, const std::unordered_set<uint32_t>& without, Kernel::XdeModel& model,
                 FaceNumbers& numbers) = nullptr;
};

/// The last resort for a file on which the kernel dies though nothing unsound can be seen in it: finds
/// the faces that it dies of, by reading halves of them in processes of their own, and those whose triangles
/// take it too long. One starts the others and never touches what the kernel makes of a file; those are
/// behind the same wall as the worker.
class FaceTrials : public Helpers
{
public:
    /// Null if no process can be started.
    static std::shared_ptr<FaceTrials> start(const std::string& path, const Help& help,
                                             const FaceTrial& trial);
    ~FaceTrials() override;
    FaceTrials(const FaceTrials&) = delete;
    FaceTrials& operator=(const FaceTrials&) = delete;

    /// Waits for the numbers of the faces that are better left out; nothing if no half of them can be read.
    /// Reports meanwhile how many of the trials are done, from 0 to 1.
    std::optional<std::unordered_set<uint32_t>> unreadable(const std::function<void(double)>& progress);

private:
    explicit FaceTrials(int pipe) : m_pipe(pipe) {}

    int m_pipe; ///< From the process that tries.
};

} // namespace Vs::Translate::Salvage
