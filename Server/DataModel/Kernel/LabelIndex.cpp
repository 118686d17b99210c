#include "Server/DataModel/Kernel/LabelIndex.h"

#include "Server/DataModel/Kernel/LabelMap.h"
#include "Server/DataModel/Model/ForkedChild.h"

#include <TDF_ChildIterator.hxx>
#include <TDF_Data.hxx>

#include <algorithm>
#include <charconv>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vs::Kernel {

namespace {

/// Labels are never taken out of a document, so that what was found once stays right.
class LabelIndex
{
public:
    TDF_Label child(const TDF_Label& father, int tag)
    {
        Children* known = m_children.ChangeSeek(father);
        if (!known)
            known = m_children.Bound(father, childrenOf(father));
        const auto place = std::ranges::lower_bound(*known, tag, {}, &Child::first);
        if (place != known->end() && place->first == tag)
            return place->second;
        const TDF_Label made = father.FindChild(tag, false); // Since then, if there is one.
        if (!made.IsNull())
            known->emplace(place, tag, made);
        return made;
    }

private:
    using Child = std::pair<int, TDF_Label>;
    using Children = std::vector<Child>;

    // The kernel has them in the order of their tags.
    static Children childrenOf(const TDF_Label& father)
    {
        Children children;
        for (TDF_ChildIterator each(father); each.More(); each.Next())
            children.emplace_back(each.Value().Tag(), each.Value());
        return children;
    }

    LabelMap<Children> m_children;
};

/// Of all documents; several threads may ask for those of theirs.
class Indexes
{
public:
    static Indexes& get()
    {
        static auto* const indexes = new Indexes;
        return *indexes;
    }

    LabelIndex& of(const TDocStd_Document* document)
    {
        const auto held = lock();
        std::unique_ptr<LabelIndex>& index = m_ofDocument[document];
        if (!index)
            index = std::make_unique<LabelIndex>();
        return *index;
    }
    void forget(const TDocStd_Document* document)
    {
        const auto held = lock();
        m_ofDocument.erase(document);
    }

private:
    std::unique_lock<std::mutex> lock()
    {
        std::unique_lock held(m_mutex, std::defer_lock);
        if (!ForkedChild::is())
            held.lock();
        return held;
    }

    std::mutex m_mutex;
    std::unordered_map<const TDocStd_Document*, std::unique_ptr<LabelIndex>> m_ofDocument;
};

} // namespace

TDF_Label labelOf(const Handle(TDocStd_Document) & document, const std::string& entry)
{
    LabelIndex& index = Indexes::get().of(document.get());
    const char *at = entry.data(), *const end = at + entry.size();
    TDF_Label label;
    for (bool isFirst = true; at != end; isFirst = false) {
        int tag = -1;
        const auto [behind, error] = std::from_chars(at, end, tag);
        if (error != std::errc() || tag < 0 || (behind != end && (*behind != ':' || behind + 1 == end)))
            return {};
        at = behind == end ? end : behind + 1;
        if (isFirst)
            label = tag == 0 ? document->GetData()->Root() : TDF_Label();
        else
            label = index.child(label, tag);
        if (label.IsNull())
            return {};
    }
    return label;
}

void forgetLabels(const Handle(TDocStd_Document) & document)
{
    Indexes::get().forget(document.get());
}

} // namespace Vs::Kernel
