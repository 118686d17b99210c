#pragma once

#include "Server/DataModel/Exchange/Format.h"
#include "Server/Translate/Reading.h"
#include "Server/Translate/Writing.h"

namespace Vs::Translate {

// `helpersFor`, `readFile` and `writeFile` are what a worker program does: each program defines them for its
// own formats, so that it neither links nor loads anything of the others.

/// Starts the helpers for a file, before the wall is raised and before there is a second thread; null if the
/// file is read without help. Nothing of it has been read yet.
std::shared_ptr<Helpers> helpersFor(Exchange::Format format, const std::string& path, const Help& help);

/// Reads the shapes with their names, colours and structure, in millimetres. Throws Unreadable.
Reading readFile(Exchange::Format format, const std::string& path, const ReadingOptions& options,
                 Reporter& reporter);

/// Writes the model to a file. Throws Unreadable with the cause.
void writeFile(Exchange::Format format, Kernel::XdeModel& model, const Writing& writing,
               const std::string& path, Reporter& reporter);

} // namespace Vs::Translate
