#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"
#include "Server/DataModel/Request.h"

namespace Vs {

/// Makes one change of the exact model. Made for one asset and not to be executed on another, as often as is
/// wanted; ended by Request::destroy.
///
/// It is an error if a component isn't there, if there is none, if a number makes no sense, or if the kernel
/// can't do what is asked; the message says which and why.
class EditRequest : public Implements<EditRequest, Request>
{
public:
    /// `name` is what the undo list shows, and stands before each error.
    [[nodiscard]] static EditRequest* make(const Asset* asset, const std::wstring& name, ModelEdit edit);

    /// A change is likely soon: the data that a file's first change needs are read meanwhile.
    static void expectSoon(const Asset& asset);

    /// What the change adds becomes a group, which is deleted with any of its members (ComponentGroups).
    void groupAdded(bool group) { m_groupAdded = group; }
    /// The components that the last execution added, by Component::id.
    const std::vector<std::string>& added() const { return m_added; }

protected:
    EditRequest(const Asset* asset, const std::wstring& name, ModelEdit edit);
    void onExecute(Asset& asset, Status& status) override;

private:
    const Asset* m_asset; ///< Only to be compared.
    ModelEdit m_edit;
    bool m_groupAdded = false;
    std::vector<std::string> m_added;
};

} // namespace Vs
