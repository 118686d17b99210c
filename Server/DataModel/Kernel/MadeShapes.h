#pragma once

#include "Server/DataModel/Kernel/MadeShape.h"

#include <TopLoc_Location.hxx>

#include <functional>
#include <list>
#include <vector>

namespace Vs::Kernel {

/// What the kernel made of shapes recently. A preview that is kept or shown again asks for the same again,
/// which then costs nothing.
class MadeShapes
{
public:
    /// Everything that the result depends on. The places are compared by where they are; the result refers to
    /// the shapes at those that it was made with.
    struct Question
    {
        int operation = 0; ///< Distinguishes this request from all others.
        double size = 0;
        std::vector<TopoDS_Shape> shapes;
        std::vector<TopLoc_Location> places;
    };
    struct Answer
    {
        Question question;
        MadeShape made;
    };

    /// The known result, or a new one. An exception of `make` passes through, and isn't remembered.
    const Answer& make(const Question& question, const std::function<MadeShape(const Question&)>& make);

private:
    static constexpr size_t kMost = 4;

    std::list<Answer> m_answers; ///< Most recent first.
};

} // namespace Vs::Kernel
