#pragma once

#include <OSD_FileSystem.hxx>

#include <map>
#include <string>
#include <vector>

namespace Vs::Translate {

/// Stands before the file system of the kernel's readers of meshes while it lives, for one file and those
/// that it refers to. What doesn't lie beside that file isn't opened: the reader gets a file without content
/// instead, and goes on.
class KernelFiles
{
public:
    explicit KernelFiles(std::string file);
    ~KernelFiles();
    KernelFiles(const KernelFiles&) = delete;
    KernelFiles& operator=(const KernelFiles&) = delete;

    /// What a reader gets in place of a file that isn't opened.
    void empty(std::string content);
    /// What it gets in place of the file itself.
    void replace(std::string content);
    /// What was asked for and not opened, once each.
    const std::vector<std::string>& refused() const;

private:
    class System;
    opencascade::handle<System> m_system;
};

} // namespace Vs::Translate
