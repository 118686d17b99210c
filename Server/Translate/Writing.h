#pragma once

#include <string>

namespace Vs::Translate {

/// How a model is to be written.
struct Writing
{
    std::string combined;    ///< All parts become one of this name, if it has any.
    std::string unit = "mm"; ///< Of the file's lengths, where its format has any choice.
};

/// The unit of the file's lengths as the kernel's writers of exact formats call it.
std::string unitWord(const Writing& writing);

} // namespace Vs::Translate
