#pragma once

#include <QString>

#include <string>

class QTranslator;

namespace Itemhub::Routes {

/// What people are shown, in their language where there is a translation of it.
class Texts
{
public:
    /// @param languages as the browser's Accept-Language; the first counts
    explicit Texts(const std::string& languages);

    [[nodiscard]] QString language() const { return m_language; } ///< Such as "en".
    /// @param key of the text in the translations
    [[nodiscard]] QString text(const char* key, const char* english) const;

private:
    QString m_language = "en";
    const QTranslator* m_translator = nullptr; ///< Lives as long as the program; null for English.
};

} // namespace Itemhub::Routes
