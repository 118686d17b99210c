#include "Server/AddInMgr/Private/ManifestReader.h"

#include "Server/Base/Strings.h"
#include "Server/Base/XMLUtility.h"

#include <cstdlib>
#include <cstring>
#include <libxml/parser.h>
#include <libxml/tree.h>

namespace Vs {

namespace {

constexpr const char* kSchema = "Server/AddInMgr/Configuration/Schema/AddinSchema.xsd";

struct FreeText
{
    void operator()(xmlChar* text) const { xmlFree(text); }
};

std::string taken(xmlChar* text)
{
    const std::unique_ptr<xmlChar, FreeText> owned(text);
    return owned ? reinterpret_cast<const char*>(owned.get()) : "";
}

/// The text of a valid manifest, trimmed.
std::string collapsed(const std::string& text)
{
    const size_t first = text.find_first_not_of(" \t\r\n");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string attribute(xmlNode* node, const char* name)
{
    return collapsed(taken(xmlGetProp(node, reinterpret_cast<const xmlChar*>(name))));
}

std::vector<std::string> children(xmlNode* parent, const char* name)
{
    std::vector<std::string> texts;
    for (xmlNode* node = parent->children; node; node = node->next)
        if (node->type == XML_ELEMENT_NODE && !std::strcmp(reinterpret_cast<const char*>(node->name), name))
            texts.push_back(collapsed(taken(xmlNodeGetContent(node))));
    return texts;
}

/// The first of them; empty if there is none.
std::string child(xmlNode* parent, const char* name)
{
    const std::vector<std::string> texts = children(parent, name);
    return texts.empty() ? std::string() : texts.front();
}

std::unique_ptr<AddInManifest> parseManifest(const boost::filesystem::path& root,
                                             const boost::filesystem::path& file, Status& status)
{
    const std::vector<XMLUtility::Error> errors = XMLUtility::validate(file, root / kSchema);
    if (!errors.empty()) {
        // The first mistake explains the ones that follow from it.
        status.addError(errors.front().toString());
        return nullptr;
    }
    const std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> document(
        xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeDoc);
    if (!document) {
        status.addError(file.wstring() + L": It cannot be read.");
        return nullptr;
    }
    xmlNode* element = xmlDocGetRootElement(document.get());
    auto manifest = std::make_unique<AddInManifest>();
    manifest->file = file;
    manifest->identifier = attribute(element, "identifier");
    manifest->required = children(element, "Requires");
    manifest->library = child(element, "Library");
    manifest->title = Strings::widen(child(element, "Title"));
    manifest->description = Strings::widen(child(element, "Description"));
    if (const std::string order = attribute(element, "loadOrder"); !order.empty())
        manifest->loadOrder = std::atoi(order.c_str());
    return manifest;
}

} // namespace

} // namespace Vs

Vs::AddInManifest* vsReadManifest(const boost::filesystem::path& root, const boost::filesystem::path& file,
                                  Vs::Status& status)
{
    return Vs::parseManifest(root, file, status).release();
}
