#include "Server/DataModel/Kernel/MadeShapes.h"

#include <algorithm>

namespace Vs::Kernel {

namespace {

bool isSamePlace(const TopLoc_Location& one, const TopLoc_Location& other)
{
    const gp_Trsf first = one.Transformation(), second = other.Transformation();
    for (int row = 1; row <= 3; ++row)
        for (int column = 1; column <= 4; ++column)
            if (first.Value(row, column) != second.Value(row, column))
                return false;
    return true;
}

bool isSame(const MadeShapes::Question& one, const MadeShapes::Question& other)
{
    return one.operation == other.operation && one.size == other.size &&
           std::equal(one.shapes.begin(), one.shapes.end(), other.shapes.begin(), other.shapes.end(),
                      [](const TopoDS_Shape& a, const TopoDS_Shape& b) { return a.IsEqual(b); }) &&
           std::equal(one.places.begin(), one.places.end(), other.places.begin(), other.places.end(),
                      isSamePlace);
}

} // namespace

const MadeShapes::Answer& MadeShapes::make(const Question& question,
                                           const std::function<MadeShape(const Question&)>& make)
{
    const auto known = std::find_if(m_answers.begin(), m_answers.end(),
                                    [&](const Answer& answer) { return isSame(answer.question, question); });
    if (known != m_answers.end()) {
        m_answers.splice(m_answers.begin(), m_answers, known);
    } else {
        m_answers.push_front({question, make(question)});
        if (m_answers.size() > kMost)
            m_answers.pop_back();
    }
    return m_answers.front();
}

} // namespace Vs::Kernel
