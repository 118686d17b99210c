#pragma once

#include <string>
#include <vector>

namespace Vs {

class Translator;

/// Chooses translators by file name.
class TranslatorFileRecognizer
{
public:
    /// An empty type stands for all. With `forSave`, only translators that can write assets of the type.
    TranslatorFileRecognizer(const std::string& assetTypeId, bool forSave);

    /// Collects the translators; before that there are none.
    void recognize();
    bool hasAvailableTranslator() const { return !m_translators.empty(); }
    const std::vector<Translator*>& translators() const { return m_translators; }

    /// As a file dialog lists them: L"*.stp;*.step;*.igs".
    [[nodiscard]] std::wstring fileExtensions() const;
    /// As a file dialog filters by them: L"STEP Files (*.stp *.step);;IGES Files (*.igs *.iges)".
    [[nodiscard]] std::wstring fileFilter() const;

    /// By the name's suffix in any case; if that is nobody's, native types included, by what the file holds.
    /// Null when the native loader is to be used. Translators live as long as the program.
    [[nodiscard]] Translator* translator(const std::wstring& path) const;

    /// Adds a translator to those that every recogniser finds. Not owned.
    static void registerTranslator(Translator* translator);
    static void unregisterTranslator(Translator* translator);

private:
    std::string m_assetTypeId;
    bool m_forSave;
    std::vector<Translator*> m_translators;
};

} // namespace Vs
