#include "UI/Base/Window/PartMeasurer.h"

namespace Vu {

PartMeasurer::~PartMeasurer()
{
    cancel();
    m_pool.waitForDone();
}

void PartMeasurer::ask(std::vector<Vs::PartToMeasure> parts)
{
    const unsigned question = ++m_question;
    m_pool.start([this, question, parts = std::move(parts)] {
        const auto measured = Vs::measureParts(parts, [&] { return m_question == question; });
        if (!measured)
            return;
        QMetaObject::invokeMethod(
            this,
            [this, question, measured = *measured] {
                if (m_question == question)
                    m_answer(measured);
            },
            Qt::QueuedConnection);
    });
}

} // namespace Vu
