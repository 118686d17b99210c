#pragma once

#include <string>

namespace Vs::Translate {

/// How a model is to be written.
struct Writing
{
    std::string combined;    ///< All parts become one of this name, if it has any.
    std::string unit = "mm"; ///< Of the file's lengths, where its format has any choice.
    std::string document;    ///< Its name, which the file's header says.
    std::string software;    ///< The program and its version, the same.
};

/// The unit of the file's lengths as the kernel's writers of exact formats call it.
std::string unitWord(const Writing& writing);

/// What the system says against writing on into a file: that its disk is full, say. Empty if it would let it
/// grow. The file may be longer afterwards.
std::string whyNoMore(const std::string& path);

} // namespace Vs::Translate
