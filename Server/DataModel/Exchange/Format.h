#pragma once

#include <string>
#include <string_view>

namespace Vs::Exchange {

/// The formats of foreign files. Gltf is the one with its data beside it, Glb the one in a single file.
enum class Format { Unknown, Step, Iges, Brep, Stl, Obj, Gltf, Glb, Vrml };

/// By the suffix, in upper or lower case; Unknown for any other.
Format formatOfName(const std::wstring& path);
/// The name's suffix in lower case, with its dot; empty if it has none.
std::wstring suffixOf(const std::wstring& path);

/// Its name for users: L"STEP".
const wchar_t* nameOf(Format format);
/// Its name for the worker: "step".
const char* keyOf(Format format);
/// Unknown for no such key.
Format formatOfKey(std::string_view key);
/// The program that reads and writes it. Each links only what its formats need, since loading that takes most
/// of its start.
const char* workerOf(Format format);

} // namespace Vs::Exchange
