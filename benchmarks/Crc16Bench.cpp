// The check value of the calibration files beside Boost.CRC's table and a bit-by-bit loop.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/crc.hpp>

#include "calibration/Crc16Ccitt.h"

namespace {

using Bytes = std::vector<unsigned char>;

std::uint16_t Process(const Bytes& bytes) {
    return CRC16CCITT(bytes.data(), static_cast<int>(bytes.size())).process();
}

std::uint16_t BoostCrc(const Bytes& bytes) {
    boost::crc_optimal<16, 0x1021, 0, 0, true, true> crc;
    crc.process_bytes(bytes.data(), bytes.size());
    return crc.checksum();
}

std::uint16_t BitByBit(const Bytes& bytes) {
    unsigned crc = 0;
    for (const unsigned char byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1U) != 0 ? 0x8408U : 0U);
        }
    }
    return static_cast<std::uint16_t>(crc);
}

template <std::uint16_t (*Crc)(const Bytes&)>
void BM_Crc16(benchmark::State& state) {
    Bytes bytes(static_cast<std::size_t>(state.range(0)));
    std::mt19937 random(1);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<unsigned char>(random()); });
    if (Crc(bytes) != BitByBit(bytes)) {
        state.SkipWithError("wrong check value");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(bytes.data());
        benchmark::DoNotOptimize(Crc(bytes));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

constexpr const char* kProcess = "process";
constexpr const char* kBoost = "boost";
constexpr const char* kBitByBit = "bit-by-bit";

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(64)->Arg(4 << 10)->Arg(1 << 20);
}

BENCHMARK(BM_Crc16<Process>)->Name(kProcess)->Apply(Sizes);
BENCHMARK(BM_Crc16<BoostCrc>)->Name(kBoost)->Apply(Sizes);
BENCHMARK(BM_Crc16<BitByBit>)->Name(kBitByBit)->Apply(Sizes);

/// The usual table, and after it how many times faster than Boost.CRC each one was, by the best repetition.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const bool timed = run.run_type == Run::RT_Iteration || run.aggregate_name == "median";
            if (timed && !run.error_occurred) {
                double& best =
                    mBest[std::stoi(run.run_name.args)]
                        .try_emplace(run.run_name.function_name, std::numeric_limits<double>::infinity())
                        .first->second;
                best = std::min(best, run.GetAdjustedCPUTime());
            }
        }
    }

    void Finalize() override {
        for (const auto& [size, best] : mBest) {
            const auto boost = best.find(kBoost);
            for (const char* const name : {kProcess, kBitByBit}) {
                if (const auto other = best.find(name); boost != best.end() && other != best.end()) {
                    std::printf("%7d bytes: %s is %.2f times as fast as Boost.CRC\n", size, name,
                                boost->second / other->second);
                }
            }
        }
    }

  private:
    std::map<int, std::map<std::string, double>> mBest;  ///< nanoseconds by bytes and function
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
}
