#pragma once

#include <TDocStd_Document.hxx>

/// Reads a file of the formats that the program is for. Each program links the readers of its own: loading
/// them is a good part of its time.
bool readInput(const char* path, Handle(TDocStd_Document) & document, bool parallel);
