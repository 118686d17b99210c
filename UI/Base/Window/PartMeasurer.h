#pragma once

#include "Server/DataModel/Measure/MeasuredParts.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <vector>

namespace Vu {

/// Measures on a thread of its own, so that nobody waits for large models. Main thread.
class PartMeasurer : public QObject
{
public:
    using Answer = std::function<void(const Vs::MeasuredParts&)>;

    /// `answer` is called on the main thread with what the last question gave.
    explicit PartMeasurer(Answer answer) : m_answer(std::move(answer)) { m_pool.setMaxThreadCount(1); }
    /// Waits until the body that is being measured is done with.
    ~PartMeasurer() override;

    /// Gives the question before up.
    void ask(std::vector<Vs::PartToMeasure> parts);
    void cancel() { ++m_question; }

private:
    Answer m_answer;
    std::atomic<unsigned> m_question = 0; ///< The number of the last one.
    QThreadPool m_pool;
};

} // namespace Vu
