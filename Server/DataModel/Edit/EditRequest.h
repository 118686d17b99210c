#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Request.h"

namespace Vs {

/// Makes one change of the exact model. Made for one asset and must not be executed on another, but any
/// number of times; ended by Request::destroy.
///
/// It is an error if a component doesn't exist, if there is none, if a number makes no sense, or if the
/// kernel can't do what is requested; the message says which and why.
class EditRequest : public Implements<EditRequest, Request>
{
public:
    /// `name` is what the undo list shows, and precedes each error.
    [[nodiscard]] static EditRequest* make(const Asset* asset, const std::wstring& name, ModelEdit edit);

    /// A change is likely soon: meanwhile reads the data that a file's first change needs.
    static void expectSoon(const Asset& asset);

    /// What the change adds becomes a group, which is deleted with any of its members (ComponentGroups).
    void groupAdded(bool group) { m_groupAdded = group; }
    /// The components that the last execution added, by Component::id.
    const std::vector<std::string>& added() const { return m_added; }

protected:
    EditRequest(const Asset* asset, const std::wstring& name, ModelEdit edit);
    void onExecute(Asset& asset, Status& status) override;

private:
    const Asset* m_asset; ///< Only for comparison.
    ModelEdit m_edit;
    bool m_groupAdded = false;
    std::vector<std::string> m_added;
};

} // namespace Vs
