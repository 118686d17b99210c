#pragma once

#include "Server/DataModel/IDocMgmtHandler.h"
#include "Tests/Server/DataModel/Fixture.h"

#include <functional>
#include <map>

/// Shared by the tests of native files.
class NativeTest : public DataModelTest
{
protected:
    /// The text of the last status.
    std::string message() const;
    /// Whether there is exactly one message, which names the file and holds the text.
    testing::AssertionResult oneMessage(const std::wstring& path, const std::string& text) const;

    /// A document with a red box and a cylinder beside it.
    Vs::Asset* madeAsset();
    bool saveAs(Vs::Document* document, const std::wstring& path);
    bool save(Vs::Document* document);
    using DataModelTest::save;
    /// Closes the document and opens its file again.
    Vs::Document* reopen(Vs::Document* document);
    /// A saved and closed file with the document of `madeAsset`.
    std::wstring savedFile(const std::string& name);
    /// Everything in the scratch folder, so that whatever a save leaves behind is noticed.
    size_t filesInFolder() const;
};

/// Answers questions, and remembers them.
class Handler : public Vs::IDocMgmtHandler
{
public:
    using Code = Vs::EDocMgmtOpCode;
    std::map<std::string, Code> answers; ///< No opinion about anything that isn't in here.
    std::vector<std::string> asked;

    Code onSavingFirstTime(const Documents&) override { return answer("first"); }
    Code onSavingMigratedFiles(const Documents&) override { return answer("migrated"); }
    Code onSavingReadOnlyFiles(const Documents&) override { return answer("read-only"); }
    Code onSavingChangedFiles(const Documents&) override { return answer("changed"); }
    Code onEditingReadOnlyDocuments(const Documents&) override { return answer("editing"); }

private:
    Code answer(const std::string& question)
    {
        asked.push_back(question);
        const auto found = answers.find(question);
        return found == answers.end() ? Vs::eDocMgmtNoOpinion : found->second;
    }
};

/// An entry of a package that a test writes with a library's writer, or reads with its reader.
struct Entry
{
    std::string name;
    std::string content;
    bool packed = true;
};
/// Both fail the test on an error.
void writePackage(const std::wstring& path, const std::vector<Entry>& entries);
std::vector<Entry> readPackage(const std::wstring& path);
