#pragma once

#include "Server/DataModel/Exchange/FileKind.h"
#include "Server/DataModel/Translator.h"

#include <vector>

namespace Vs::Exchange {

/// Reads and writes one of the exchange formats.
class ForeignTranslator : public Implements<ForeignTranslator, Translator>
{
public:
    /// How files of a format are written.
    enum class Save {
        None,
        Mesh,  ///< By this program, from the displayed meshes.
        Worker ///< By the worker.
    };
    struct Row
    {
        Format format;
        Save save;
        const char* identifier;
        const wchar_t* name;
        std::vector<std::wstring> extensions;
        TranslatorChoices choices;
    };

    explicit ForeignTranslator(const Row& row) : m_row(row), m_identifier(row.identifier), m_name(row.name) {}

    const std::string& identifier() const override { return m_identifier; }
    const std::wstring& name() const override { return m_name; }
    const std::vector<std::wstring>& extensions() const override { return m_row.extensions; }
    bool canOpen() const override { return true; }
    bool canSave(const std::string&) const override { return m_row.save != Save::None; }
    TranslatorChoices saveChoices() const override { return m_row.choices; }

    bool open(TranslatorOpenOptions& options, TranslatorContext& context, Status& status) override;
    bool save(TranslatorSaveOptions& options, TranslatorContext& context, Status& status) override;
    uint64_t countTriangles(TranslatorSaveOptions& options, TranslatorContext& context,
                            const std::function<bool()>& goOn) const override;

    /// One per format, created at the first call.
    static const std::vector<Translator*>& all();

private:
    bool saveByWorker(Asset& asset, TranslatorSaveOptions& options, Status& status) const;

    const Row& m_row;
    std::string m_identifier;
    std::wstring m_name;
};

} // namespace Vs::Exchange
