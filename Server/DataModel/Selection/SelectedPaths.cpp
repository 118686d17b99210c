#include "Server/DataModel/Selection/SelectedPaths.h"

#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/Selection.h"
#include "Server/DataModel/Selection/SelectionSet.h"

namespace Vs {

std::vector<ObjectPath> pathsIn(const SelectionSet& set)
{
    std::vector<ObjectPath> paths;
    for (const auto& selection : set.selections())
        if (const auto* object = cast<LogicalSelection>(selection.get()))
            paths.push_back(object->path());
    return paths;
}

std::vector<std::wstring> pathTextsIn(const SelectionSet& set, const Asset& asset)
{
    std::vector<std::wstring> texts;
    for (const ObjectPath& path : pathsIn(set))
        texts.push_back(pathText(path, asset));
    return texts;
}

} // namespace Vs
