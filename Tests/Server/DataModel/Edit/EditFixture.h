#pragma once

#include "Server/Base/Strings.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Server/DataModel/Fixture.h"

/// Changes of a model, each of which is checked to be undone and redone without a trace.
class EditTest : public DataModelTest
{
protected:
    /// Makes the change, as if it were a preview first, undoes it, and makes it again; returns the ids of
    /// what was added.
    std::vector<std::string> edit(Vs::Asset& asset, const Vs::ModelEdit& change)
    {
        const std::string before = digestOf(asset);
        make(asset, change);
        const std::string after = digestOf(asset);
        EXPECT_TRUE(Vs::Transaction::undo(&asset));
        const std::vector<std::string> added = make(asset, change);
        EXPECT_EQ(digestOf(asset), after);
        EXPECT_TRUE(Vs::Transaction::undo(&asset));
        EXPECT_EQ(digestOf(asset), before);
        EXPECT_TRUE(Vs::Transaction::redo(&asset));
        EXPECT_EQ(digestOf(asset), after);
        return added;
    }

    /// The reason why a change is refused; checks that the model and the steps are unchanged.
    std::string refusal(Vs::Asset& asset, const Vs::ModelEdit& change)
    {
        const std::string before = digestOf(asset);
        const unsigned steps = Vs::Transaction::undoSteps(&asset);
        Vs::Status own;
        Vs::EditRequest* request = Vs::EditRequest::make(&asset, L"Edit", change);
        EXPECT_FALSE(request->execute(&asset, own));
        request->destroy();
        EXPECT_EQ(digestOf(asset), before);
        EXPECT_EQ(Vs::Transaction::undoSteps(&asset), steps);
        const std::string text = Vs::Strings::narrow(own.toString());
        EXPECT_TRUE(text.starts_with("Edit: ") || text.find('"') != std::string::npos) << text;
        return text;
    }

    static GkPoint3d originOf(const Vs::Asset& asset, const std::string& id)
    {
        const auto place = Vs::placementOf(Vs::ObjectPath{.component = id}, asset);
        EXPECT_TRUE(place) << id;
        return place.value_or(GkMatrix3d()) * GkPoint3d();
    }

private:
    std::vector<std::string> make(Vs::Asset& asset, const Vs::ModelEdit& change)
    {
        Vs::Status own;
        Vs::EditRequest* request = Vs::EditRequest::make(&asset, L"Edit", change);
        EXPECT_TRUE(request->execute(&asset, own)) << Vs::Strings::narrow(own.toString());
        const std::vector<std::string> added = request->added();
        request->destroy();
        return added;
    }
};
