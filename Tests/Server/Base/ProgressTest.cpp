#include "Server/Base/Progress.h"

#include "Server/Base/Metrics.h"

#include <csignal>
#include <gtest/gtest.h>
#include <limits>

namespace {

class NotingSink : public Vs::ProgressSink
{
public:
    void begin(const std::wstring& title) override { log += L"begin " + title + L';'; }
    bool update(double fraction, const std::wstring& step) override
    {
        log += std::to_wstring(static_cast<int>(fraction * 100)) + L' ' + step + L';';
        return goOn;
    }
    void end() override { log += L"end;"; }

    std::wstring log;
    bool goOn = true;
};

class ProgressTest : public testing::Test
{
protected:
    ProgressTest() { Vs::Progress::sink(&sink); }
    ~ProgressTest() override { Vs::Progress::sink(nullptr); }
    NotingSink sink;
};

TEST_F(ProgressTest, OfNestedWorkIsShownOnce)
{
    {
        Vs::ProgressScope outer(L"Open");
        EXPECT_TRUE(outer.update(0.25, L"read"));
        {
            Vs::ProgressScope inner(L"Mesh");
            EXPECT_TRUE(inner.update(7, L"mesh"));
            EXPECT_TRUE(inner.update(std::numeric_limits<double>::quiet_NaN()));
        }
    }
    EXPECT_EQ(sink.log, L"begin Open;25 read;100 mesh;0 ;end;");
    EXPECT_FALSE(Vs::Progress::active());
}

TEST_F(ProgressTest, IsCancelledFromASignalHandlerUntilTheOutermostWorkEnds)
{
    static int hooked;
    hooked = 0;
    Vs::Progress::cancelHook([] { ++hooked; });
    const auto old = std::signal(SIGUSR1, [](int) { Vs::Progress::requestCancel(); });
    {
        const Vs::Progress::CancelScope replay;
        {
            Vs::ProgressScope work(L"Open");
            std::raise(SIGUSR1);
            EXPECT_FALSE(work.update(0.5));
        }
        EXPECT_TRUE(Vs::Progress::cancelled());
        EXPECT_FALSE(Vs::ProgressScope(L"Next").update(0));
    }
    std::signal(SIGUSR1, old);
    Vs::Progress::cancelHook(nullptr);
    EXPECT_EQ(hooked, 1);
    EXPECT_TRUE(Vs::ProgressScope(L"Later").update(0));
}

TEST_F(ProgressTest, IsCancelledByTheButtonOfWhatShowsIt)
{
    Vs::ProgressScope work(L"Open");
    sink.goOn = false;
    EXPECT_FALSE(work.update(0.1));
    sink.goOn = true;
    EXPECT_FALSE(work.update(0.2));
}

TEST_F(ProgressTest, GoesOnWhenWhatShowsItLeaves)
{
    Vs::ProgressScope work(L"Open");
    Vs::Progress::sink(nullptr);
    EXPECT_TRUE(work.update(0.1));
    EXPECT_EQ(sink.log, L"begin Open;");
}

TEST(MetricsTest, CountWhatWasStartedAndStopped)
{
    const auto* name = Vs::UniqueString::find("MetricsTest");
    auto* metric = Vs::Metrics::TimeMetric::make(name, L"Test");
    EXPECT_EQ(metric, Vs::Metrics::TimeMetric::make(name, L"Other title"));
    metric->stop();
    EXPECT_EQ(metric->count(), 0u);
    metric->start();
    EXPECT_TRUE(metric->running());
    metric->stop();
    metric->stop();
    EXPECT_EQ(metric->count(), 1u);
    EXPECT_EQ(metric->totalSeconds(), metric->seconds());

    const auto* clock = Vs::UniqueString::find("MetricsTest::scope");
    EXPECT_EQ(Vs::Clock::sum(clock).count, 0u);
    {
        const Vs::Clock outer(clock);
        const Vs::Clock inner(clock);
    }
    EXPECT_EQ(Vs::Clock::sum(clock).count, 2u);
}

} // namespace
