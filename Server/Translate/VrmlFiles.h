#pragma once

#include "Server/Translate/Reporter.h"
#include "Server/Translate/VrmlMarks.h"

#include <VrmlData_Scene.hxx>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Vs::Translate {

/// One file as read by the kernel, with lengths in millimetres.
struct VrmlFile
{
    VrmlData_Scene scene;
    VrmlMarks marks; ///< Where the scene has empty transformations instead.
};

/// A VRML file with those that it inlines, each a separate scene: so their names don't clash, and what the
/// kernel itself doesn't read is found in all of them.
class VrmlFiles
{
public:
    /// Changes the working directory of the program, since the kernel looks for the other files there. Throws
    /// Unreadable.
    VrmlFiles(const std::string& path, Reporter& reporter);

    const VrmlFile& first() const { return *m_first; }
    /// What such a node inlines.
    const VrmlFile& inlined(const VrmlMark& mark) const { return *m_others.at(mark.urls); }
    /// What was left out, as named in the file.
    const std::vector<std::string>& refused() const { return m_refused; }

private:
    std::string m_folder;
    std::unique_ptr<VrmlFile> m_first;
    std::map<std::vector<std::string>, std::shared_ptr<VrmlFile>> m_others;
    std::vector<std::string> m_refused;

    std::shared_ptr<VrmlFile> readOther(const std::vector<std::string>& urls) const;
};

} // namespace Vs::Translate
