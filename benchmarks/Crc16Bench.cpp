// The check value of the calibration files beside Boost.CRC's table; both are held against a loop over the
// bits.

#include <algorithm>
#include <cstdint>
#include <random>
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

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(64)->Arg(4 << 10)->Arg(1 << 20);
}

BENCHMARK(BM_Crc16<Process>)->Name("process")->Apply(Sizes);
BENCHMARK(BM_Crc16<BoostCrc>)->Name("boost")->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
