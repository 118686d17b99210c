#pragma once

#include <string>

namespace Vs::Translate {

/// How to write a model.
struct Writing
{
    std::string combined;    ///< If it has a name, all parts become one of that name.
    std::string unit = "mm"; ///< Of the file's lengths, if its format has a choice.
    std::string document;    ///< Its name, for the file's header.
    std::string software;    ///< The program and its version, likewise.
};

/// The unit of the file's lengths as the kernel's writers of exact formats name it.
std::string unitWord(const Writing& writing);

/// The system's objection to extending a file: that its disk is full, for example. Empty if the file may
/// grow. The file may be longer afterwards.
std::string whyNoMore(const std::string& path);

} // namespace Vs::Translate
