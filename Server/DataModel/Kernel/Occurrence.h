#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopLoc_Location.hxx>
#include <gp_Trsf.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

/// A component (Component::id) as an XDE document holds it. Throws std::runtime_error if it is gone.
class Occurrence
{
public:
    Occurrence(const Handle(TDocStd_Document) & document, const std::string& id);

    const std::string& id() const { return m_id; }
    const TDF_Label& label() const { return m_label; }
    /// The part or assembly that it shows; its own label for a free part at the top of the tree.
    TDF_Label shown() const;
    /// The assembly that holds it; null at the top.
    const TDF_Label& parent() const { return m_parent; }
    /// The parent's coordinates in the model's.
    const gp_Trsf& parentPlace() const { return m_parentPlace; }
    /// Its own coordinates in the model's, those of a body without the shape's location.
    gp_Trsf place() const;
    /// The location in the parent that moves it by that motion, in the model's coordinates, from where it is.
    TopLoc_Location moved(const gp_Trsf& motion) const;

    /// An assembly at the top that nothing refers to: it has no location.
    bool isRootAssembly() const;

private:
    TDF_Label m_label, m_parent;
    std::string m_id;
    gp_Trsf m_parentPlace;
};

/// Those of the components that aren't inside another one of them, each label once.
std::vector<Occurrence> topmostOccurrences(const Handle(TDocStd_Document) & document,
                                           const std::vector<std::string>& components);

/// Turns a free part at the top of the tree into an occurrence of a part on another label, so that it can
/// have a placement and siblings. The component keeps its id. Occurrences stay as they are.
void detachPart(const Handle(TDocStd_Document) & document, const TDF_Label& label);

} // namespace Vs::Kernel
