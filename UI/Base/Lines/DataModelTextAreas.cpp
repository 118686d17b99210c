// The subject areas "AssetMgt" and "DocumentMgt": identifiers that other lines can refer to.

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/DataModel/AllAssets.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/SessionMgr.h"

namespace Vu {

namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kAssetArea = L"AssetMgt";
constexpr const wchar_t* kDocumentArea = L"DocumentMgt";

constexpr AreaRow kAssetMgtAreaRow = {kAssetArea, L"Commands that list what assets there can be", false,
                                      AreaRow::Checks::Nothing};

constexpr AreaRow kDocumentMgtAreaRow = {kDocumentArea, L"Commands that list what documents are open", false,
                                         AreaRow::Checks::Nothing};

class TextCmdAssetTypes : public Vs::PythonEntry<TextCmdAssetTypes, Vs::TextCommand>
{
public:
    TextCmdAssetTypes()
        : PythonEntry(kAssetArea, L"AssetTypes",
                      L"Lists the types that an asset can have, each with its identifier and its name", "",
                      true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        const Vs::AssetTypeMgr* types = Vs::AssetTypeMgr::get();
        std::wstring list;
        for (unsigned i = 0; i < types->assetTypes(); ++i) {
            const Vs::AssetType* type = types->assetType(i);
            list +=
                (list.empty() ? L"" : L"\n") + Vs::Strings::widen(type->identifier()) + L'\t' + type->name();
        }
        return {0, list};
    }
};

std::wstring lineOf(const Vs::Asset& asset)
{
    return L"\n\t" + asset.name() + L'\t' + Vs::Strings::widen(asset.assetTypeIdentifier()) +
           (asset.isVisible() ? L"" : L"\thidden");
}

class TextCmdDocumentList : public Vs::PythonEntry<TextCmdDocumentList, Vs::TextCommand>
{
public:
    TextCmdDocumentList()
        : PythonEntry(
              kDocumentArea, L"List",
              L"[/Assets] Lists the documents that are open, each with its name and its path, and with "
              L"/Assets what is in them",
              "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const bool withAssets = parameters.hasFlag(L"Assets");
        std::wstring list;
        for (const Vs::Document* document : SessionMgr::get()->openDocuments()) {
            list += (list.empty() ? L"" : L"\n") + document->displayName() + L'\t' + document->path();
            if (withAssets)
                for (const Vs::Asset* asset : Vs::allAssets(*document))
                    list += lineOf(*asset);
        }
        return {0, list};
    }
};

const SubjectArea<kAssetMgtAreaRow> theAssetArea;
const SubjectArea<kDocumentMgtAreaRow> theDocumentArea;
TextCmdAssetTypes theAssetTypes;
TextCmdDocumentList theDocumentList;

} // namespace

} // namespace Vu
