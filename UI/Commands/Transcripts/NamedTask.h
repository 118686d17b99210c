#pragma once

#include "Server/Base/Task.h"

namespace Vu::Commands {

/// A task whose class identifier is the plain name `Self::kName`, by which others find it in a queue.
template <class Self>
class NamedTask : public Vs::Task
{
public:
    static const Vs::UniqueString* interfaceId()
    {
        static const Vs::UniqueString* const id = Vs::UniqueString::find(Self::kName, true);
        return id;
    }
    const Vs::UniqueString* getInterfaceId() const override { return interfaceId(); }
    void* queryInterface(const Vs::UniqueString* key) const override
    {
        if (key == interfaceId())
            return const_cast<Self*>(static_cast<const Self*>(this));
        return Vs::Task::queryInterface(key);
    }

protected:
    NamedTask() : Vs::Task(kPriority) {}

private:
    static constexpr int kPriority = 1;
};

} // namespace Vu::Commands
