#include "Server/Translate/VrmlFiles.h"

#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Reading.h"
#include "Server/Translate/VrmlInlines.h"

#include <algorithm>
#include <filesystem>
#include <istream>
#include <sstream>
#include <streambuf>
#include <string_view>

namespace Vs::Translate {

namespace {

constexpr double kMillimetresInMetre = 1000;

const char* faultText(VrmlData_ErrorStatus status)
{
    switch (status) {
    case VrmlData_EndOfFile:
        return "it ends too early";
    case VrmlData_NumericInputError:
    case VrmlData_IrrelevantNumber:
    case VrmlData_NonPositiveSize:
        return "a number is wrong";
    case VrmlData_NodeNameUnknown:
        return "it uses a node that it hasn't defined";
    case VrmlData_CannotOpenFile:
        return "a file that it refers to can't be opened";
    default:
        return "it can't be understood";
    }
}

void checkVersion(std::string_view text)
{
    if (text.starts_with("#VRML V1"))
        throw Unreadable("is a VRML 1.0 file; only VRML 2.0 can be read");
}

/// `open` receives what the kernel reads from a text.
template <class Open>
void read(VrmlFile& file, std::string_view text, const std::string& folder, Open&& open)
{
    file.marks = vrmlMarks(text);
    file.scene.SetLinearScale(kMillimetresInMetre);
    file.scene.SetVrmlDir(folder.c_str());
    const auto buffer = open(file.marks.text.empty() ? text : std::string_view(file.marks.text));
    std::istream stream(buffer.get());
    file.scene << stream;
    if (file.scene.Status() != VrmlData_StatusOK)
        throw Unreadable("isn't a valid VRML file: line " + std::to_string(file.scene.GetLineError()) + ": " +
                         faultText(file.scene.Status()));
}

} // namespace

VrmlFiles::VrmlFiles(const std::string& path, Reporter& reporter)
    : m_folder(std::filesystem::path(path).parent_path().string()), m_first(std::make_unique<VrmlFile>())
{
    // If the folder has nothing of that name, the kernel looks in the working directory.
    std::error_code ignored;
    std::filesystem::current_path(m_folder, ignored);
    const MappedFile file(path);
    checkVersion(file.bytes());
    const VrmlInlines inlines = vrmlInlines(file.bytes(), path);
    for (const std::string& other : inlines.files)
        reporter.dependsOn(other);
    m_refused = inlines.refused;
    read(*m_first, inlines.text.empty() ? file.bytes() : std::string_view(inlines.text), m_folder,
         [&](std::string_view text) { return std::make_unique<ReportingBuffer>(text, reporter); });
    for (std::vector<const VrmlFile*> taken{m_first.get()}; !taken.empty();) {
        const VrmlFile* next = taken.back();
        taken.pop_back();
        for (const VrmlMark& mark : next->marks.marks)
            if (!mark.urls.empty() && !m_others.contains(mark.urls))
                taken.push_back((m_others[mark.urls] = readOther(mark.urls)).get());
    }
}

std::shared_ptr<VrmlFile> VrmlFiles::readOther(const std::vector<std::string>& urls) const
{
    const auto pathOf = [&](const std::string& url) {
        return (std::filesystem::path(m_folder) / url).string();
    };
    const auto found = std::ranges::find_if(urls, [&](const std::string& url) {
        std::error_code ignored;
        return std::filesystem::exists(pathOf(url), ignored);
    });
    const std::string& url = found == urls.end() ? urls.front() : *found;
    try {
        const MappedFile file(pathOf(url));
        checkVersion(file.bytes());
        auto other = std::make_shared<VrmlFile>();
        read(*other, file.bytes(), m_folder, [](std::string_view text) {
            return std::make_unique<std::stringbuf>(std::string(text), std::ios::in);
        });
        return other;
    } catch (const Unreadable& fault) {
        throw Unreadable("takes in \"" + url + "\", which " + fault.what());
    }
}

} // namespace Vs::Translate
