// Searching and replacing in wide text, beside the same work through a string view.

#include "classlib/strings/ZUString.h"

#include <benchmark/benchmark.h>
#include <cstddef>
#include <string>
#include <string_view>

namespace {

using view_t = std::basic_string_view<utf16_t>;

// A path of the usual length, and a long text.
std::basic_string<utf16_t> make_text(std::int64_t n_components) {
    std::basic_string<utf16_t> text = UTF16("C:");
    for (std::int64_t i = 0; i < n_components; ++i)
        text += UTF16("/photographs");
    return text + UTF16("/needle.cr2");
}

void text_sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(4)->Arg(1000);
}

void find_text(benchmark::State& state) {
    const ZUString text = make_text(state.range(0)).c_str();
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(UTF16("needle"), 0));
}
BENCHMARK(find_text)->Apply(text_sizes);

void peer_view_find(benchmark::State& state) {
    const auto text = make_text(state.range(0));
    const utf16_t* units = text.c_str();
    for (auto _ : state) {
        benchmark::DoNotOptimize(units);
        benchmark::DoNotOptimize(view_t(units).find(UTF16("needle")));
    }
}
BENCHMARK(peer_view_find)->Apply(text_sizes);

void replace_text(benchmark::State& state) {
    const ZUString original = make_text(state.range(0)).c_str();
    const ZUString search = UTF16("/");
    const ZUString replacement = UTF16("\\");
    for (auto _ : state) {
        ZUString text = original;
        text.replace(search, replacement);
        benchmark::DoNotOptimize(static_cast<const utf16_t*>(text));
    }
}
BENCHMARK(replace_text)->Apply(text_sizes);

// Copies as a value type does, counts, and copies into an array of the exact size, with views for everything.
void peer_view_replace(benchmark::State& state) {
    const auto original = make_text(state.range(0));
    const view_t search = UTF16("/");
    const view_t replacement = UTF16("\\");
    for (auto _ : state) {
        std::basic_string<utf16_t> text = original.c_str();
        const view_t old = text.c_str();
        std::size_t n_found = 0;
        for (auto at = old.find(search); at != old.npos; at = old.find(search, at + search.size()))
            ++n_found;
        std::basic_string<utf16_t> replaced;
        replaced.reserve(old.size() + n_found * replacement.size() - n_found * search.size());
        std::size_t from = 0;
        for (auto at = old.find(search); at != old.npos; at = old.find(search, from)) {
            replaced.append(old.substr(from, at - from)).append(replacement);
            from = at + search.size();
        }
        replaced.append(old.substr(from));
        text = std::move(replaced);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(peer_view_replace)->Apply(text_sizes);

} // namespace
