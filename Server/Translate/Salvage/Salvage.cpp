#include "Server/Translate/Salvage/Salvage.h"

#include "Server/DataModel/Exchange/LostFaces.h"
#include "Server/Translate/Salvage/Mender.h"

#include <algorithm>

namespace Vs::Translate::Salvage {

namespace {

/// What the kernel distinguishes by the schema that a file names.
std::string schemaOf(std::string_view file)
{
    constexpr std::string_view kSchemas[] = {"AP242_MANAGED_MODEL_BASED_3D_ENGINEERING_MIM_LF",
                                             "AUTOMOTIVE_DESIGN", "CONFIG_CONTROL_DESIGN"};
    const std::string_view header = file.substr(0, file.find("DATA;"));
    for (const std::string_view schema : kSchemas)
        if (header.find(schema) != header.npos)
            return std::string(schema);
    return "AUTOMOTIVE_DESIGN";
}

bool isFramed(std::string_view file)
{
    const size_t begin = file.find_first_not_of(" \r\n\t\xef\xbb\xbf");
    return begin != file.npos && file.substr(begin, 13) == "ISO-10303-21;" &&
           file.find("END-ISO-10303-21;") != file.npos;
}

std::string counted(size_t count, const char* what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string listed(const std::vector<std::string>& things)
{
    std::string list;
    for (size_t i = 0; i < things.size(); ++i)
        list += (i == 0 ? "" : i + 1 == things.size() ? " and " : ", ") + things[i];
    return list;
}

/// Occurrences of parts in assemblies that are set aside, each of which is described by several statements.
size_t lostPlacements(const Instances& instances)
{
    size_t occurrences = 0, places = 0;
    for (const Instance& instance : instances.all()) {
        occurrences +=
            !instance.isSound && instance.text.find("NEXT_ASSEMBLY_USAGE_OCCURRENCE") != instance.text.npos;
        places += !instance.isSound &&
                  instance.text.find("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION") != instance.text.npos;
    }
    return std::max(occurrences, places);
}

std::vector<std::string> lossesOf(const Instances& instances, const Mender& mender)
{
    constexpr size_t kMostParts = 20;
    std::vector<std::string> losses;
    for (const auto& [part, loss] : mender.losses()) {
        if (losses.size() == kMostParts) {
            losses.push_back("faces of " + counted(mender.losses().size() - kMostParts, "further part"));
            break;
        }
        losses.push_back(Exchange::LostFaces{loss.lost, loss.all, part}.text());
    }
    if (const size_t placements = lostPlacements(instances); placements > 0)
        losses.push_back(counted(placements, "placement"));
    return losses;
}

std::vector<std::string> warningsOf(const Mender& mender, const std::vector<std::string>& losses)
{
    std::vector<std::string> warnings;
    for (const std::string& loss : losses)
        warnings.push_back("lacks " + loss);
    if (const size_t faces = mender.looseFaces(); faces > 0)
        warnings.push_back("has " + counted(faces, "face") + (faces == 1 ? " that belongs" : " that belong") +
                           " to no part any more, and " + (faces == 1 ? "is" : "are") +
                           " shown as \"Salvaged\"");
    if (mender.lostUnits())
        warnings.push_back("doesn't say any more what its unit is: millimetres are assumed");
    return warnings;
}

} // namespace

std::vector<uint32_t> facesOf(std::string_view file)
{
    std::vector<uint32_t> faces;
    const Instances instances(file);
    for (const Instance& instance : instances.all())
        if (instance.isSound && instance.roles.test(size_t(Role::Face)))
            faces.push_back(instance.number);
    return faces;
}

Salvaged salvage(std::string_view file, const std::unordered_set<uint32_t>& without)
{
    const Instances instances(file, without);
    Salvaged result;
    result.wasDamaged = instances.setAside() > 0 || !isFramed(file);
    Mender mender(instances);
    mender.mend();
    const std::string data = mender.data();
    if (data.empty())
        return result;
    result.text = "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
                  "FILE_NAME('','',(''),(''),'','','');\nFILE_SCHEMA(('" +
                  schemaOf(file) + "'));\nENDSEC;\nDATA;\n" + data + "ENDSEC;\nEND-ISO-10303-21;\n";
    const std::vector<std::string> losses = lossesOf(instances, mender);
    result.losses = listed(losses);
    result.warnings = warningsOf(mender, losses);
    return result;
}

} // namespace Vs::Translate::Salvage
