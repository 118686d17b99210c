#pragma once

#include <OSD_FileSystem.hxx>

#include <string>

namespace Vs::Translate {

/// While it lives, the kernel's readers that open this file by its name read that content instead.
class ReplacedFile
{
public:
    ReplacedFile(const std::string& path, std::string content);
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;

private:
    opencascade::handle<OSD_FileSystem> m_system;
};

} // namespace Vs::Translate
