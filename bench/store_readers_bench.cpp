// Reading time of the Store's files by their size, which doubles four times up to 50 MB. Linear reading shows
// as the same bytes per second in every row, and as a complexity of N with a small deviation.
#include "launchers/appx_manifest_reader.h"
#include "launchers/store_cache_reader.h"
#include "support/hostile_texts.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace tarnwick {
namespace {

constexpr int64_t kLargest = int64_t{50} << 20;

void Sizes(benchmark::internal::Benchmark* bench) {
  for (int64_t size = kLargest >> 4; size <= kLargest; size *= 2) bench->Arg(size);
  bench->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

void Report(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}

void Manifest(benchmark::State& state, const std::string& pattern) {
  const std::string text = tests::Repeated(pattern, static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(ParseAppxManifest(text));
  Report(state);
}

void Entitlements(benchmark::State& state, const std::string& pattern) {
  const std::string text =
      "{\"Entitlements\":[" + tests::Repeated(pattern, static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    EntitlementsCache cache;
    ParseEntitlements(text, cache);
    benchmark::DoNotOptimize(cache);
  }
  Report(state);
}

void Fulfillment(benchmark::State& state, const std::string& pattern) {
  const std::string text =
      "{\"FulfillmentData\":{" + tests::Repeated(pattern, static_cast<size_t>(state.range(0))) + "}";
  for (auto _ : state) benchmark::DoNotOptimize(ParseFulfillmentData(text));
  Report(state);
}

BENCHMARK_CAPTURE(Manifest, names, std::string("<DisplayName>A</DisplayName>"))->Apply(Sizes);
BENCHMARK_CAPTURE(Manifest, unclosed, std::string("<Properties><Applications><Application "))->Apply(Sizes);
BENCHMARK_CAPTURE(Manifest, angles, std::string("<"))->Apply(Sizes);
BENCHMARK_CAPTURE(Entitlements, one_product, std::string(R"({"ProductId":"9A","ProductKind":"Game"},)"))
    ->Apply(Sizes);
BENCHMARK_CAPTURE(Entitlements, other_objects, std::string("{},"))->Apply(Sizes);
BENCHMARK_CAPTURE(Entitlements, open_braces, std::string("{"))->Apply(Sizes);
BENCHMARK_CAPTURE(Entitlements, unnamed_texts, std::string("{\"\"}"))->Apply(Sizes);
BENCHMARK_CAPTURE(Fulfillment, other_keys, std::string("\"SkuId\":\"0010\","))->Apply(Sizes);

}  // namespace
}  // namespace tarnwick
