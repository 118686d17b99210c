#pragma once

#include "Server/Translate/Reading.h"
#include "Server/Translate/Salvage/FaceTrials.h"

#include <cstdint>
#include <string_view>
#include <unordered_set>

namespace Vs::Translate {

/// Reads the shapes with their names, colours and structure, in millimetres. Throws Unreadable.
Reading readIges(const std::string& path, const ReadingOptions& options, Reporter& reporter);

/// Reads what is sound of a file's content, without some of its entities. False if the kernel refuses it.
bool readSoundIges(std::string_view file, const std::unordered_set<uint32_t>& without,
                   Kernel::XdeModel& model, Salvage::FaceNumbers& numbers);

} // namespace Vs::Translate
