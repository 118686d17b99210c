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

/// One measurement that waits to be made.
struct MeasureRequest
{
    using Object = Vs::StrongRef<Vs::LogicalSelection>;

    Object selection1, selection2, selection3; ///< The later ones null when unused.
    int type = 0;                              ///< Of Vs::EMeasureType.
    RealValueCommandInput* input = nullptr;    ///< Where the result goes.

    std::vector<Object> objects() const;
    /// Measures; false if there is no answer.
    bool measure(Vs::MeasureResult& result) const;
};

/// What the measure command has to measure: from the picks of its selection inputs and the enabled types, a
/// queue of measurements, and where their results go.
class MeasureState
{
public:
    explicit MeasureState(MeasureCmd* owner) : owner(owner) {}

    MeasureCmd* owner;
    std::vector<MeasureRequest> requests;
    /// The pick of each selection input; null for none.
    Vs::StrongRef<Vs::LogicalSelection> selection1, selection2, selection3;

    Vs::StrongRef<Vs::LogicalSelection>& selection(int number);

    /// Queues what selection 1 or 2 gives by itself.
    void requestSingle(int selectionNumber);
    /// Queues what the first two give together.
    void requestPair();
    /// Queues the angle of all three.
    void requestTriple();
    /// All of the three, as far as there are selections.
    void requestAll();
    /// The first request in the queue that has an answer; null for none.
    const MeasureRequest* firstAnswered(Vs::MeasureResult& result) const;
    /// Makes the measurements and hands their results on. In a passive command the first one that succeeds is
    /// the only one.
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
