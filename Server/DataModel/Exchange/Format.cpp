#include "Server/DataModel/Exchange/Format.h"

#include <cwctype>
#include <initializer_list>

namespace Vs::Exchange {

namespace {

struct FormatRow
{
    Format format;
    const wchar_t* name;
    const char* key;
    const char* worker;
    std::initializer_list<const wchar_t*> suffixes;
};

const FormatRow kFormats[] = {
    {Format::Step, L"STEP", "step", "quillet-translate-step", {L".stp", L".step"}},
    {Format::Iges, L"IGES", "iges", "quillet-translate-iges", {L".igs", L".iges"}},
    {Format::Brep, L"BREP", "brep", "quillet-translate-shape", {L".brep", L".brp"}},
    {Format::Stl, L"STL", "stl", "quillet-translate-shape", {L".stl"}},
    {Format::Obj, L"OBJ", "obj", "quillet-translate-mesh", {L".obj"}},
    {Format::Gltf, L"glTF", "gltf", "quillet-translate-mesh", {L".gltf"}},
    {Format::Glb, L"GLB", "glb", "quillet-translate-mesh", {L".glb"}},
    {Format::Vrml, L"VRML", "vrml", "quillet-translate-vrml", {L".wrl", L".vrml"}},
};

const FormatRow* rowOf(Format format)
{
    for (const FormatRow& row : kFormats)
        if (row.format == format)
            return &row;
    return nullptr;
}

} // namespace

std::wstring suffixOf(const std::wstring& path)
{
    const size_t dot = path.find_last_of(L'.');
    if (dot == std::wstring::npos || path.find(L'/', dot) != std::wstring::npos)
        return {};
    std::wstring suffix = path.substr(dot);
    for (wchar_t& c : suffix)
        c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return suffix;
}

Format formatOfName(const std::wstring& path)
{
    const std::wstring suffix = suffixOf(path);
    for (const FormatRow& row : kFormats)
        for (const wchar_t* candidate : row.suffixes)
            if (suffix == candidate)
                return row.format;
    return Format::Unknown;
}

const wchar_t* nameOf(Format format)
{
    const FormatRow* row = rowOf(format);
    return row ? row->name : L"unknown";
}

const char* keyOf(Format format)
{
    const FormatRow* row = rowOf(format);
    return row ? row->key : "unknown";
}

Format formatOfKey(std::string_view key)
{
    for (const FormatRow& row : kFormats)
        if (key == row.key)
            return row.format;
    return Format::Unknown;
}

const char* workerOf(Format format)
{
    const FormatRow* row = rowOf(format);
    return row ? row->worker : "";
}

} // namespace Vs::Exchange
