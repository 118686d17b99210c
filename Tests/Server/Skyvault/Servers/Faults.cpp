#include "Tests/Server/Skyvault/Servers/Faults.h"

#include <algorithm>
#include <gtest/gtest.h>

using TestSupport::Fault;
using State = Vs::CloudErrorState;

namespace {

constexpr std::chrono::milliseconds kShortPatience{250}, kPatience{15000};

std::string bomb()
{
    std::string text = "<?xml version=\"1.0\"?><!DOCTYPE b [<!ENTITY a0 \"aaaaaaaaaaaaaaaa\">";
    for (int i = 1; i < 12; ++i) {
        const std::string before = "&a" + std::to_string(i - 1) + ";";
        text += "<!ENTITY a" + std::to_string(i) + " \"" + before + before + before + before + before + "\">";
    }
    return text + "]><multistatus xmlns=\"DAV:\"><response><href>&a11;</href></response></multistatus>";
}

Fault million()
{
    Fault fault = Fault::answer(207, {}, {"Content-Type: application/xml"});
    fault.pieces = [count = 0]() mutable -> std::string {
        if (count == 0 && ++count)
            return "<?xml version=\"1.0\"?><multistatus xmlns=\"DAV:\">";
        std::string piece;
        for (int i = 0; i < 100 && count < 1000000; ++i)
            piece += "<response><href>/f" + std::to_string(++count) +
                     "</href><propstat><prop><getetag>\"1\"</getetag></prop><status>HTTP/1.1 200 OK</status>"
                     "</propstat></response>";
        return piece;
    };
    return fault;
}

Fault page(int status)
{
    return Fault::answer(status, "<html><body>Please sign in to the network<p></body></html>",
                         {"Content-Type: text/html"});
}

} // namespace

const std::vector<FaultCase>& faults()
{
    using enum State;
    static const std::vector<FaultCase> kFaults{
        {"delay", [] { return Fault::delay(0.05); }, {}},
        {"reset", [] { return Fault::reset(); }, {Unreachable}},
        {"request cut", [] { return Fault::cutRequest(7); }, {Unreachable}},
        {"answer cut at once", [] { return Fault::cutAnswer(0); }, {Unreachable}},
        {"answer cut in its headers", [] { return Fault::cutAnswer(25); }, {Unreachable, BadAnswer}},
        {"answer cut in its body", [] { return Fault::cutAnswer(400); }, {Unreachable, BadAnswer}},
        {"answer lost", [] { return Fault::loseAnswer(); }, {Unreachable}},
        {"stall", [] { return Fault::stall(); }, {Unreachable}},
        {"answer stalls", [] { return Fault::stallAnswer(25); }, {Unreachable}},
        {"401", [] { return page(401); }, {Unauthorized}},
        {"403", [] { return page(403); }, {Forbidden}},
        {"404", [] { return page(404); }, {NotFound, Changed}},
        {"409", [] { return page(409); }, {NoFolders, Changed}},
        {"412", [] { return page(412); }, {Changed, NotKept}},
        {"423", [] { return page(423); }, {Locked}},
        {"429", [] { return Fault::answer(429, {}, {"Retry-After: 0"}); }, {}},
        {"429 for an hour", [] { return Fault::answer(429, {}, {"Retry-After: 3600"}); }, {TooManyRequests}},
        {"500", [] { return page(500); }, {ServerError}},
        {"502", [] { return page(502); }, {ServerError}},
        {"507", [] { return page(507); }, {DriveFull}},
        {"a network's own page",
         [] { return page(200); },
         {BadAnswer, NotKept, NotFound, NoFolders, Changed}},
        {"to another host",
         [] { return Fault::answer(302, {}, {"Location: http://drive.invalid/"}); },
         {Redirected}},
        {"garbage", [] { return Fault::answer(207, "<multi\x01>&\xff"); }, {BadAnswer}, true},
        {"bomb", [] { return Fault::answer(207, bomb()); }, {BadAnswer}, true},
        {"a million", million, {BadAnswer}, true, true},
    };
    return kFaults;
}

void disturbOnce(TestSupport::FaultProxy& proxy, Vs::Cloud::Drive& drive, int number, const FaultCase& one)
{
    proxy.forgetRequests();
    const auto prepareFor = [&drive, number, isStall = one.isStall()](int next) {
        drive.patience(isStall && next == number ? kShortPatience : kPatience);
    };
    prepareFor(1);
    proxy.onRequest([number, fault = one.fault, prepareFor](const TestSupport::FaultProxy::Request& seen) {
        prepareFor(seen.number + 1);
        return seen.number == number ? std::optional(fault()) : std::nullopt;
    });
}

void endDisturbance(TestSupport::FaultProxy& proxy, Vs::Cloud::Drive& drive)
{
    proxy.onRequest({});
    drive.patience(kPatience);
}

void expectClear(const Vs::Cloud::DriveResult& result, const FaultCase& one, const std::string& secret)
{
    if (result.isOk())
        return;
    EXPECT_TRUE(std::find(one.states.begin(), one.states.end(), result.state) != one.states.end())
        << "state " << int(result.state) << ": " << result.detail;
    EXPECT_NE(result.detail, "");
    EXPECT_EQ(result.detail.find(secret), std::string::npos);
    EXPECT_EQ(result.detail.find('\n'), std::string::npos) << result.detail;
}
