#pragma once

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Support/RealData.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Session/AssetSession.h"

namespace CommandsTests {

using Texts = std::vector<std::wstring>;

/// A design of three boxes, the last of which has a placement.
class EditComponents : public WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        answer(L"Design.New");
        answer(L"Design.Box 1 1 1");
        answer(L"Design.Box 2 2 2");
        answer(L"Design.Box 3 3 3 10,0,0");
    }

    static Vs::Asset* asset() { return activeSession()->asset(); }
    static Vs::SelectionSet& selected() { return activeSession()->selectionManager()->selectionSet(); }
    static Vs::ObjectPath path(const std::wstring& text)
    {
        Vs::Status status;
        const auto found = Vs::findPath(*asset(), text, status);
        EXPECT_TRUE(found) << status.matchingError("");
        return found.value_or(Vs::ObjectPath());
    }
    static void select(const Texts& texts)
    {
        selected().clear();
        for (const std::wstring& text : texts)
            selected().add(Vs::StrongRef<Vs::Selection>(
                new Vs::LogicalSelection(asset(), path(text), Vs::StrongRef<Vs::Selection>())));
    }
    /// The paths of all components, each after the one that contains it.
    static Texts paths() { return below(*asset()->components()); }
    static unsigned steps() { return Vs::Transaction::undoSteps(asset()); }
    /// Saves, closes and reopens; the tree is then that of the file.
    static void saveAndReopen(const std::wstring& file)
    {
        answer(L"Document.SaveAs \"" + scratch(file) + L'"');
        answer(L"Document.Close");
        answer(L"Document.Open \"" + scratch(file) + L'"');
    }

    /// An assembly of 28 components, in which brackets and bolts occur several times.
    static void openAssembly()
    {
        answer(L"Document.Open \"" + (TestSupport::realDataFolder() / "as1-oc-214.stp").wstring() + L'"');
    }

private:
    static Texts below(const Vs::Component& parent)
    {
        Texts texts;
        for (const auto& child : parent.children) {
            texts.push_back(Vs::pathText(Vs::ObjectPath{child->id}, *asset()));
            const Texts inner = below(*child);
            texts.insert(texts.end(), inner.begin(), inner.end());
        }
        return texts;
    }
};

} // namespace CommandsTests
