#pragma once

#include "Server/DataModel/Model/ModelKernel.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Vs {
class FileMapping;
class ModelFile;
} // namespace Vs

/// The exact data of native files. The kernel trusts what it reads and crashes on crafted data, so this
/// program's kernel reads only what a kernel run by this user has written: data that the user's programs
/// saved, identified by their digests, or a copy of other data that a worker has read and rewritten. Such
/// copies are kept in the import cache. Any thread.
namespace Vs::Exchange::ExactData {

/// The model of a native file. Throws std::runtime_error with a message that can be shown.
std::unique_ptr<ModelKernel> read(const ModelFile& file);

/// The place of a model in a native file.
struct Place
{
    uint64_t place;
    uint64_t size;
};
/// Records that these models of a file were written by this user's kernel. Returns at once; the note is
/// written in the background.
void noteOwn(std::shared_ptr<const FileMapping> file, std::vector<Place> models);

} // namespace Vs::Exchange::ExactData
