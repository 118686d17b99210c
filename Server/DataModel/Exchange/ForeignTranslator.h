#pragma once

#include "Server/DataModel/Exchange/FileKind.h"
#include "Server/DataModel/Translator.h"

#include <vector>

namespace Vs::Exchange {

class ImportCache;

/// Reads and writes one of the exchange formats.
class ForeignTranslator : public Implements<ForeignTranslator, Translator>
{
public:
    struct Row
    {
        Format format;
        const char* identifier;
        const wchar_t* name;
        std::vector<std::wstring> extensions;
    };

    explicit ForeignTranslator(const Row& row) : m_row(row), m_identifier(row.identifier), m_name(row.name) {}

    const std::string& identifier() const override { return m_identifier; }
    const std::wstring& name() const override { return m_name; }
    const std::vector<std::wstring>& extensions() const override { return m_row.extensions; }
    bool canOpen() const override { return true; }
    bool canSave(const std::string&) const override { return true; }

    bool open(TranslatorOpenOptions& options, TranslatorContext& context, Status& status) override;
    bool save(TranslatorSaveOptions& options, TranslatorContext& context, Status& status) override;

    /// One for each of the formats; made at the first call.
    static const std::vector<Translator*>& all();

private:
    bool saveByWorker(const Asset& asset, const std::wstring& path, Status& status) const;

    const Row& m_row;
    std::string m_identifier;
    std::wstring m_name;
};

/// The cache that the program's imports share.
ImportCache& importCache();

} // namespace Vs::Exchange
