#pragma once

#include "Server/DataModel/Model/ForkedChild.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Model/ModelKernel.h"

#include <atomic>
#include <future>
#include <memory>
#include <mutex>
#include <string>

namespace Vs {

/// Where the bodies of one asset come from. Outlives the asset as long as anybody holds one of its bodies.
class ModelSource
{
public:
    /// The file that the asset was read from; null for one that was created here.
    std::shared_ptr<const ModelFile> file;
    /// Whether that is a native file, which anybody may have made; otherwise a worker of this program made
    /// it.
    bool isNative = false;

    /// Runs `work(ModelKernel&)` with the kernel's model, which is read at the first call; throws
    /// std::runtime_error, at each call, if it can't be. Any thread, one at a time; while one waits in long
    /// work (Progress), code that draws meanwhile may use the kernel as well.
    template <class Work>
    auto withKernel(Work&& work)
    {
        const Hold hold = held();
        return work(kernel());
    }
    /// Keeps all other threads out of the kernel as long as it lives; empty if one of them is in there now.
    using Hold = std::unique_lock<std::recursive_mutex>;
    [[nodiscard]] Hold tryHold() { return Hold(m_mutex, std::try_to_lock); }
    /// Starts to read the kernel's model on another thread, for callers that will soon need it: a model of a
    /// million parts takes seconds. Whoever asks for it meanwhile waits for the rest, and gets any error.
    void readAhead();
    bool kernelLoaded() const { return m_isLoaded; }

private:
    ModelKernel& kernel();
    // A child has no other threads, and the lock may still be held by one of the parent's.
    Hold held() { return ForkedChild::is() ? Hold(m_mutex, std::defer_lock) : Hold(m_mutex); }

    std::recursive_mutex m_mutex;
    std::unique_ptr<ModelKernel> m_kernel;
    std::atomic<bool> m_isLoaded = false;
    std::string m_fault;       ///< Why it can't be read.
    std::future<void> m_ahead; ///< Waited for before anything else is destroyed.
};

} // namespace Vs
