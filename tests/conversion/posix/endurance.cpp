#include "conversion/public/raw_to_tiff.h"
#include "tests/support/scratch_folder.h"

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <span>
#include <stdexcept>

// Converts raw files in turn, COUNT times (100 or more) in one process, as a host does that runs for days:
//
//   endurance COUNT FILE ...
//
// Every tenth conversion is of a file that is refused. The table says for each what the process holds after
// it and the time it took. It fails where an answer is not the expected one, and where the process holds more
// in the last tenth of the conversions than in the second.
namespace {

struct job {
    std::string name; // of the raw file
    int answer;
};

struct sample {
    double resident; // KiB
    double peak;     // KiB resident at any time so far
    double heap;     // KiB that malloc gave out and did not get back
    double open_files;
    double threads;
};

struct limit {
    const char* what;
    double sample::*figure;
    double most; // growth
};

// Between the two tenths lie 8,000 of 10,000 conversions, for each of which 16 KiB are 2 bytes, or 160 of the
// 200 of an ordinary test. Without a leak the heap grew by up to 8 KiB: malloc keeps short lists of free
// blocks for each thread, and counts them as given out. The pages grew by up to 24 KiB.
constexpr limit limits[] = {
    {"open files", &sample::open_files, 0},
    {"threads", &sample::threads, 0},
    {"KiB of heap", &sample::heap, 16},
    {"KiB resident", &sample::resident, 256},
};

double count_entries(const char* folder) {
    return static_cast<double>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

sample take_sample() {
    double pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages; // the second number
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto heap = mallinfo2();
    return {pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024, static_cast<double>(usage.ru_maxrss),
            static_cast<double>(heap.uordblks + heap.hblkhd) / 1024,
            count_entries("/proc/self/fd") - 1, // the one that counts them
            count_entries("/proc/self/task")};
}

class converting_host final {
public:
    explicit converting_host(std::span<char* const> files) {
        for (const std::filesystem::path file : files) {
            const std::string bytes = read_file(file);
            const std::string name = file.filename().string();
            add(m_whole, {name, 0}, bytes);
            add(m_refused, {"half_" + name, 11}, bytes.substr(0, bytes.size() / 2));
            add(m_refused, {"head_" + name, 11}, bytes.substr(0, 1000));
        }
        m_refused.push_back({"missing.cr2", 10});
        std::filesystem::current_path(m_folder.inq_path());
    }

    // Makes the n-th conversion, counted from 1, and prints its line.
    [[nodiscard]] sample convert(std::size_t n) const {
        const bool is_tenth = n % 10 == 0;
        const auto& jobs = is_tenth ? m_refused : m_whole;
        const job& next = jobs[(is_tenth ? n / 10 : n) % jobs.size()];
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t cpu_start = std::clock();
        carry_out(next);
        const double cpu = static_cast<double>(std::clock() - cpu_start) * 1e3 / CLOCKS_PER_SEC;
        const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
        const sample taken = take_sample();
        std::printf("%zu\t%s\t%d\t%.0f\t%.0f\t%.1f\t%.0f\t%.0f\t%.2f\t%.2f\n", n, next.name.c_str(),
                    next.answer, taken.resident, taken.peak, taken.heap, taken.open_files, taken.threads,
                    wall.count(), cpu);
        return taken;
    }

private:
    void add(std::vector<job>& jobs, job added, const std::string& bytes) const {
        write_file(m_folder.inq_path() / added.name, bytes);
        jobs.push_back(std::move(added));
    }

    void carry_out(const job& next) const {
        const std::u16string name(next.name.begin(), next.name.end());
        const raw_to_tiff_location raw{nullptr, nullptr, name.c_str()};
        const raw_to_tiff_location tiff{nullptr, nullptr, u"out.tif"};
        if (const int answer = convert_raw_to_tiff(&raw, &tiff); answer != next.answer)
            throw std::runtime_error(next.name + " was answered by " + std::to_string(answer));
    }

    scratch_folder m_folder;
    std::vector<job> m_whole;
    std::vector<job> m_refused;
};

// Compares what was least in each tenth: malloc gives pages back when it likes, but what leaks stays.
bool stays_level(std::span<const sample> samples) {
    const std::size_t tenth = samples.size() / 10;
    bool is_level = true;
    for (const auto& [what, figure, most] : limits) {
        const double before = (*std::ranges::min_element(samples.subspan(tenth, tenth), {}, figure)).*figure;
        const double after = (*std::ranges::min_element(samples.last(tenth), {}, figure)).*figure;
        const bool has_grown = after > before + most;
        if (has_grown)
            std::fprintf(stderr, "endurance: %s grew from %.0f to %.0f\n", what, before, after);
        is_level = is_level && !has_grown;
    }
    return is_level;
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t count = argc > 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (count < 100) {
        std::cerr << "usage: endurance COUNT FILE ...\n";
        return 2;
    }
    try {
        const converting_host host(std::span(argv + 2, argv + argc));
        std::vector<sample> samples(count); // all of it at once, so that it does not grow
        std::puts("number\tfile\tanswer\tresident\tpeak\theap\topen files\tthreads\twall ms\tCPU ms");
        for (std::size_t n = 0; n < count; ++n)
            samples[n] = host.convert(n + 1);
        return stays_level(samples) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "endurance: " << error.what() << '\n';
        return 1;
    }
}
