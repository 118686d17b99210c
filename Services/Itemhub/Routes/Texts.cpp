#include "Services/Itemhub/Routes/Texts.h"

#include <QDir>
#include <QTranslator>

#include <map>
#include <memory>

namespace Itemhub::Routes {

namespace {

using Translators = std::map<QString, std::unique_ptr<QTranslator>>;

/// By language.
const Translators& translators()
{
    static const Translators all = [] {
        Translators found;
        const QDir folder(":/texts");
        for (const QString& name : folder.entryList({"*.qm"})) {
            auto translator = std::make_unique<QTranslator>();
            if (translator->load(folder.filePath(name)))
                found.emplace(name.section('.', 0, 0), std::move(translator));
        }
        return found;
    }();
    return all;
}

} // namespace

Texts::Texts(const std::string& languages)
{
    const auto found = translators().find(QString::fromStdString(languages.substr(0, 2)).toLower());
    if (found == translators().end())
        return;
    m_language = found->first;
    m_translator = found->second.get();
}

QString Texts::text(const char* key, const char* english) const
{
    const QString translated = m_translator ? m_translator->translate(key, english) : QString();
    return translated.isEmpty() ? QString::fromUtf8(english) : translated;
}

} // namespace Itemhub::Routes
