#pragma once

#include "Server/DataModel/Measure/MeasuredParts.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <vector>

namespace Vu {

/// Measures on a separate thread, so that nobody waits for large models. Main thread.
class PartMeasurer : public QObject
{
public:
    using Answer = std::function<void(const Vs::MeasuredParts&)>;

    /// `answer` is called on the main thread with the result of the last question.
    explicit PartMeasurer(Answer answer) : m_answer(std::move(answer)) { m_pool.setMaxThreadCount(1); }
    /// Waits until the body being measured is finished.
    ~PartMeasurer() override;

    /// Drops the previous question.
    void ask(std::vector<Vs::PartToMeasure> parts);
    void cancel() { ++m_question; }

private:
    Answer m_answer;
    std::atomic<unsigned> m_question = 0; ///< The number of the last one.
    QThreadPool m_pool;
};

} // namespace Vu
