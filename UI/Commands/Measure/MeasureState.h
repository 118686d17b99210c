#pragma once

#include "Server/DataModel/Measure/MeasureTypes.h"
#include "Server/DataModel/Selection/Selection.h"

#include <vector>

namespace Vu {
class RealValueCommandInput;
}

namespace Vu::Commands {

class MeasureCmd;
struct MeasureSide;

/// One pending measurement.
struct MeasureRequest
{
    using Object = Vs::StrongRef<Vs::LogicalSelection>;

    Object selection1, selection2, selection3; ///< Unused ones, at the end, are null.
    int type = 0;                              ///< Of Vs::EMeasureType.
    RealValueCommandInput* input = nullptr;    ///< Where the result goes.

    std::vector<Object> objects() const;
    /// Measures; false if there is no answer.
    bool measure(Vs::MeasureResult& result) const;
};

/// The measure command's work: from the picks of its selection inputs and the enabled types, a queue of
/// measurements, and where their results go.
class MeasureState
{
public:
    explicit MeasureState(MeasureCmd* owner) : owner(owner) {}

    MeasureCmd* owner;
    std::vector<MeasureRequest> requests;
    /// The pick of each selection input; null for none.
    Vs::StrongRef<Vs::LogicalSelection> selection1, selection2, selection3;

    Vs::StrongRef<Vs::LogicalSelection>& selection(int number);

    /// Queues the measurements of selection 1 or 2 alone.
    void requestSingle(int selectionNumber);
    /// Queues the measurements between the first two.
    void requestPair();
    /// Queues the angle of all three.
    void requestTriple();
    /// All three, as far as there are selections.
    void requestAll();
    /// The first request in the queue that has an answer; null for none.
    const MeasureRequest* firstAnswered(Vs::MeasureResult& result) const;
    /// Makes the measurements and delivers their results. In a passive command, only the first that succeeds.
    void runRequests();

private:
    void add(Vs::EMeasureType type, RealValueCommandInput* input,
             const Vs::StrongRef<Vs::LogicalSelection>& first,
             const Vs::StrongRef<Vs::LogicalSelection>& second = nullptr,
             const Vs::StrongRef<Vs::LogicalSelection>& third = nullptr);
    void runPassive();
    void run(const MeasureRequest& request);
};

} // namespace Vu::Commands
