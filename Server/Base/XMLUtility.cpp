#include "Server/Base/XMLUtility.h"

#include "Server/Base/Strings.h"

#include <boost/filesystem/operations.hpp>

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#include <memory>

namespace Vs::XMLUtility {

namespace {

struct Free
{
    void operator()(xmlDoc* object) const { xmlFreeDoc(object); }
    void operator()(xmlParserCtxt* object) const { xmlFreeParserCtxt(object); }
    void operator()(xmlSchema* object) const { xmlSchemaFree(object); }
    void operator()(xmlSchemaParserCtxt* object) const { xmlSchemaFreeParserCtxt(object); }
    void operator()(xmlSchemaValidCtxt* object) const { xmlSchemaFreeValidCtxt(object); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

/// No network, no entities from other files, no DTD; libxml's own limits on size and depth stay in force.
constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

/// While this exists, nothing that a document points to is loaded, such as a schema that the file names for
/// itself.
class NothingElseIsLoaded
{
public:
    NothingElseIsLoaded() : m_before(xmlGetExternalEntityLoader())
    {
        xmlSetExternalEntityLoader(
            [](const char*, const char*, xmlParserCtxtPtr) -> xmlParserInputPtr { return nullptr; });
    }
    ~NothingElseIsLoaded() { xmlSetExternalEntityLoader(m_before); }
    NothingElseIsLoaded(const NothingElseIsLoaded&) = delete;
    NothingElseIsLoaded& operator=(const NothingElseIsLoaded&) = delete;

private:
    xmlExternalEntityLoader m_before;
};

struct Findings
{
    const boost::filesystem::path& file;
    std::vector<Error> errors;

    void add(int line, std::wstring message)
    {
        while (!message.empty() && (message.back() == L'\n' || message.back() == L' '))
            message.pop_back();
        errors.push_back({file, line, std::move(message)});
    }

    static void collect(void* self, xmlErrorPtr error)
    {
        if (error && error->level >= XML_ERR_ERROR)
            static_cast<Findings*>(self)->add(error->line,
                                              Strings::widen(error->message ? error->message : ""));
    }
};

Owned<xmlDoc> parse(Findings& findings)
{
    boost::system::error_code error;
    if (!boost::filesystem::is_regular_file(findings.file, error)) {
        findings.add(0, boost::filesystem::exists(findings.file, error) ? L"It is not a file."
                                                                        : L"There is no such file.");
        return nullptr;
    }
    const Owned<xmlParserCtxt> parser(xmlNewParserCtxt());
    Owned<xmlDoc> document(xmlCtxtReadFile(parser.get(), findings.file.c_str(), nullptr, kParseOptions));
    if (!document) {
        const xmlError* failure = xmlCtxtGetLastError(parser.get());
        findings.add(failure ? failure->line : 0,
                     Strings::widen(failure && failure->message ? failure->message : "It cannot be read."));
    } else if (xmlGetIntSubset(document.get())) {
        findings.add(1, L"A document type is not allowed here.");
        document = nullptr;
    }
    return document;
}

} // namespace

std::wstring Error::toString() const
{
    const std::wstring place = line > 0 ? L':' + std::to_wstring(line) : std::wstring();
    return file.wstring() + place + L": " + message;
}

std::vector<Error> validate(const boost::filesystem::path& file, const boost::filesystem::path& schemaFile)
{
    Findings inSchema{schemaFile, {}};
    const Owned<xmlDoc> schemaDocument = parse(inSchema);
    if (!schemaDocument)
        return inSchema.errors;
    const Owned<xmlSchemaParserCtxt> schemaParser(xmlSchemaNewDocParserCtxt(schemaDocument.get()));
    xmlSchemaSetParserStructuredErrors(schemaParser.get(), &Findings::collect, &inSchema);
    const Owned<xmlSchema> schema(xmlSchemaParse(schemaParser.get()));
    if (!schema) {
        if (inSchema.errors.empty())
            inSchema.add(0, L"It is not an XML schema.");
        return inSchema.errors;
    }

    Findings inFile{file, {}};
    const Owned<xmlDoc> document = parse(inFile);
    if (!document)
        return inFile.errors;
    const NothingElseIsLoaded guard;
    const Owned<xmlSchemaValidCtxt> validator(xmlSchemaNewValidCtxt(schema.get()));
    xmlSchemaSetValidStructuredErrors(validator.get(), &Findings::collect, &inFile);
    if (xmlSchemaValidateDoc(validator.get(), document.get()) != 0 && inFile.errors.empty())
        inFile.add(0, L"It cannot be checked.");
    return inFile.errors;
}

bool schemaValidator(const boost::filesystem::path& file, const boost::filesystem::path& schema)
{
    return validate(file, schema).empty();
}

} // namespace Vs::XMLUtility
