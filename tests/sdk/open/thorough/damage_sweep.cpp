#include "fuzz/sdk/open/raw_layout.h"
#include "tests/sdk/open/conversion_run.h"
#include "tests/support/scratch_folder.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>

// Damages raw files in thousands of ways, and converts each in a process of its own:
//
//   damage_sweep SHARE FILE ...       one of SHARE damages, by chance but always the same ones
//
// Each byte of the first 4 KiB and 2,000 others become 00, ff and inverted; and the file is cut at 500
// lengths. It fails where a run dies, takes 5 seconds or 1 GiB, or is refused without a reason. The table
// says how many were refused, made the same picture and another one; and of those that changed the pixel data
// alone, how many changed the picture and how many of these were refused.
//
// Where DAMAGE_SWEEP_CONVERTER is set it is a shell's command that converts "$1" to "$2" instead, and only
// the pixel data are damaged.
namespace {

constexpr rlim_t most_seconds = 5;     // of all processors together, so that other programs do not count
constexpr unsigned most_waiting = 120; // seconds, whatever it waits for
constexpr long most_memory = 1L << 20; // KiB
constexpr std::size_t cut = 3;         // after the ways in which a byte changes

struct damage {
    std::size_t position;
    std::size_t way;
};

char change(char byte, std::size_t way) {
    const std::array ways = {'\0', '\xff', static_cast<char>(~byte)};
    return ways[way];
}

enum outcome_t : unsigned { refused, same_picture, other_picture, without_reason, died, n_outcomes };

struct run_result {
    outcome_t outcome;
    double seconds;
    long memory; // at most, in KiB
};

using process_body = std::function<outcome_t()>;

double seconds_of(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

constexpr int first_code = 64; // of outcomes: sanitizers end a process with codes below

// Runs a body in a process of its own, which died unless it says how the body ended.
run_result run_apart(const process_body& body, rlim_t seconds) {
    const pid_t child = fork();
    if (child == 0) {
        const rlimit processor_time{seconds, seconds};
        setrlimit(RLIMIT_CPU, &processor_time);
        alarm(most_waiting);
        _exit(first_code + static_cast<int>(body()));
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const int outcome = WIFEXITED(status) ? WEXITSTATUS(status) - first_code : -1;
    const bool is_well = outcome >= 0 && usage.ru_maxrss <= most_memory;
    return {is_well ? static_cast<outcome_t>(outcome) : died,
            seconds_of(usage.ru_utime) + seconds_of(usage.ru_stime), usage.ru_maxrss};
}

class file_sweep final {
public:
    file_sweep(const std::filesystem::path& file, const char* converter)
        : m_intact(read_file(file)),
          m_raw((m_folder.inq_path() / "in").replace_extension(file.extension())),
          m_converter(converter) {
        if (run(m_intact).outcome != other_picture)
            throw std::runtime_error(file.string() + " cannot be converted");
        m_picture = read_file(m_tiff);
        for (const stretch& found : find_stretches(std::as_bytes(std::span(m_intact))))
            if (found.kind == stretch_kind_t::codes)
                m_codes = found;
    }

    // Answers whether all went well.
    bool sweep(unsigned share) {
        auto damages = make_damages();
        std::ranges::shuffle(damages, m_random);
        damages.resize(damages.size() / share);
        for (const damage& inflicted : damages)
            inflict(inflicted);
        return m_counts[died] + m_counts[without_reason] == 0;
    }

    void print(const std::string& name) const {
        std::printf("%-40s", name.c_str());
        for (const unsigned count : m_counts)
            std::printf("%8u", count);
        std::printf("%8.2f %6ld %8u %8u\n", m_slowest, m_most_memory >> 10, m_data_changes, m_noticed);
    }

private:
    [[nodiscard]] std::vector<damage> make_damages() {
        const std::size_t head = std::min<std::size_t>(4096, m_intact.size() - 1);
        std::uniform_int_distribution<std::size_t> anywhere(0, m_intact.size() - 1);
        std::uniform_int_distribution<std::size_t> elsewhere(head, m_intact.size() - 1);
        std::vector<damage> damages;
        for (std::size_t n = 0; n < head + 2000; ++n) {
            const std::size_t position = n < head ? n : elsewhere(m_random);
            for (std::size_t way = 0; way < cut; ++way)
                damages.push_back({position, way});
        }
        for (unsigned n = 0; n < 500; ++n)
            damages.push_back({anywhere(m_random), cut});
        std::erase_if(damages, [this](const damage& made) {
            return made.way == cut ? m_converter != nullptr
                                   : change(m_intact[made.position], made.way) == m_intact[made.position] ||
                                         (m_converter != nullptr && !is_in_codes(made.position));
        });
        return damages;
    }

    [[nodiscard]] bool is_in_codes(std::size_t position) const {
        return position >= m_codes.first && position - m_codes.first < m_codes.size;
    }

    void inflict(const damage& inflicted) {
        std::string bytes = m_intact;
        if (inflicted.way == cut)
            bytes.resize(inflicted.position);
        else
            bytes[inflicted.position] = change(bytes[inflicted.position], inflicted.way);
        const run_result result = run(bytes);
        m_counts[result.outcome]++;
        if (result.outcome >= without_reason)
            std::cerr << "byte " << inflicted.position << ", way " << inflicted.way << ": outcome "
                      << result.outcome << '\n';
        m_slowest = std::max(m_slowest, result.seconds);
        m_most_memory = std::max(m_most_memory, result.memory);
        const bool has_effect = result.outcome != same_picture;
        if (inflicted.way != cut && is_in_codes(inflicted.position) && has_effect) {
            ++m_data_changes;
            m_noticed += result.outcome == refused;
        }
    }

    // What is left of the run before goes first.
    [[nodiscard]] run_result run(const std::string& bytes) const {
        std::filesystem::remove(m_tiff);
        write_file(m_raw, bytes);
        if (m_converter == nullptr)
            return run_apart([this] { return convert_here(); }, most_seconds);
        return run_apart([this] { return convert_elsewhere(); }, RLIM_INFINITY);
    }

    [[nodiscard]] outcome_t convert_here() const {
        const std::string reason = convert(m_raw, m_tiff);
        if (reason.empty())
            return judge_picture();
        return reason == "internal error" || list_folder(m_folder.inq_path()).size() != 1 ? without_reason
                                                                                          : refused;
    }

    [[nodiscard]] outcome_t convert_elsewhere() const {
        const pid_t child = fork();
        if (child == 0)
            execl("/bin/sh", "sh", "-c", m_converter, "sh", m_raw.c_str(), m_tiff.c_str(), nullptr);
        int status = 0;
        waitpid(child, &status, 0);
        return status == 0 && std::filesystem::exists(m_tiff) ? judge_picture() : refused;
    }

    [[nodiscard]] outcome_t judge_picture() const {
        return read_file(m_tiff) == m_picture ? same_picture : other_picture;
    }

    scratch_folder m_folder;
    std::string m_intact;
    std::filesystem::path m_raw;
    std::filesystem::path m_tiff = m_folder.inq_path() / "out.tif";
    const char* m_converter;
    std::string m_picture; // the intact file's
    stretch m_codes{};
    std::mt19937 m_random;
    std::array<unsigned, n_outcomes> m_counts{};
    unsigned m_data_changes = 0; // that have an effect
    unsigned m_noticed = 0;      // of these
    double m_slowest = 0;        // run
    long m_most_memory = 0;
};

} // namespace

int main(int argc, char** argv) {
    const unsigned long share = argc > 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (share == 0) {
        std::cerr << "usage: damage_sweep SHARE FILE ...\n";
        return 2;
    }
    std::printf("%-40s%8s%8s%8s%8s%8s%8s %6s %8s %8s\n", "", "refused", "same", "other", "mute", "died",
                "seconds", "MiB", "changed", "noticed");
    bool is_well = true;
    for (const std::filesystem::path file : std::span(argv + 2, argv + argc))
        try {
            file_sweep sweep(file, std::getenv("DAMAGE_SWEEP_CONVERTER"));
            is_well = sweep.sweep(static_cast<unsigned>(share)) && is_well;
            sweep.print(file.filename());
            std::fflush(stdout);
        } catch (const std::exception& problem) {
            std::cerr << "damage_sweep: " << problem.what() << '\n';
            return 2;
        }
    return is_well ? 0 : 1;
}
