#pragma once

#include <QString>

#include <string>

class QTranslator;

namespace Itemhub::Routes {

/// Texts shown to people, in their language where there is a translation.
class Texts
{
public:
    /// @param languages as in the browser's Accept-Language; the first one counts
    explicit Texts(const std::string& languages);

    [[nodiscard]] QString language() const { return m_language; } ///< For example "en".
    /// @param key of the text in the translations
    [[nodiscard]] QString text(const char* key, const char* english) const;

private:
    QString m_language = "en";
    const QTranslator* m_translator = nullptr; ///< Lives as long as the program; null for English.
};

} // namespace Itemhub::Routes
