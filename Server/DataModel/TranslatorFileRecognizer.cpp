#include "Server/DataModel/TranslatorFileRecognizer.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Exchange/FileKind.h"
#include "Server/DataModel/Exchange/ForeignTranslator.h"

#include <algorithm>
#include <cwctype>

namespace Vs {

namespace {

std::vector<Translator*>& registered()
{
    static std::vector<Translator*> translators = Exchange::ForeignTranslator::all();
    return translators;
}

bool endsWith(const std::wstring& path, const std::wstring& extension)
{
    return path.size() > extension.size() &&
           std::equal(extension.begin(), extension.end(), path.end() - static_cast<long>(extension.size()),
                      [](wchar_t a, wchar_t b) {
                          return std::towlower(static_cast<wint_t>(a)) ==
                                 std::towlower(static_cast<wint_t>(b));
                      });
}

bool isNative(const std::wstring& path)
{
    const DocumentMgr* manager = DocumentMgr::get();
    for (unsigned i = 0; i < manager->documentTypes(); ++i)
        if (endsWith(path, manager->documentType(i)->extension()))
            return true;
    return false;
}

} // namespace

TranslatorFileRecognizer::TranslatorFileRecognizer(const std::string& assetTypeId, bool forSave)
    : m_assetTypeId(assetTypeId), m_forSave(forSave)
{
}

void TranslatorFileRecognizer::recognize()
{
    m_translators.clear();
    for (Translator* translator : registered())
        if (m_forSave ? translator->canSave(m_assetTypeId) : translator->canOpen())
            m_translators.push_back(translator);
}

std::wstring TranslatorFileRecognizer::fileExtensions() const
{
    std::wstring list;
    for (const Translator* translator : m_translators)
        for (const std::wstring& extension : translator->extensions())
            list += (list.empty() ? L"*" : L";*") + extension;
    return list;
}

std::wstring TranslatorFileRecognizer::fileFilter() const
{
    std::wstring filter;
    for (const Translator* translator : m_translators) {
        filter += (filter.empty() ? L"" : L";;") + translator->name() + L" (";
        for (const std::wstring& extension : translator->extensions())
            filter += (filter.ends_with(L'(') ? L"*" : L" *") + extension;
        filter += L")";
    }
    return filter;
}

Translator* TranslatorFileRecognizer::translator(const std::wstring& path) const
{
    for (Translator* translator : m_translators)
        for (const std::wstring& extension : translator->extensions())
            if (endsWith(path, extension))
                return translator;
    if (m_forSave || isNative(path))
        return nullptr;
    Status ignored;
    const Exchange::Format held = Exchange::recognise(path, ignored);
    for (Translator* translator : m_translators)
        if (!translator->extensions().empty() &&
            Exchange::formatOfName(L"x" + translator->extensions().front()) == held &&
            held != Exchange::Format::Unknown)
            return translator;
    return nullptr;
}

void TranslatorFileRecognizer::registerTranslator(Translator* translator)
{
    assertMainThread();
    auto& all = registered();
    if (translator && std::find(all.begin(), all.end(), translator) == all.end())
        all.push_back(translator);
}

void TranslatorFileRecognizer::unregisterTranslator(Translator* translator)
{
    assertMainThread();
    std::erase(registered(), translator);
}

} // namespace Vs
