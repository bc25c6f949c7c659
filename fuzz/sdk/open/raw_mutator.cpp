#include "fuzz/fuzz_target.h"
#include "fuzz/sdk/open/raw_layout.h"

#include <algorithm>
#include <array>
#include <random>

// Damages a raw file where it matters: every stretch stays where it is, so that the rest can still be found,
// and directories of a few bytes are hit as often as samples of thousands.
extern "C" std::size_t LLVMFuzzerMutate(unsigned char* data, std::size_t size, std::size_t most);

namespace {

using bytes_t = std::span<unsigned char>;

class damager final {
public:
    damager(bytes_t file, unsigned seed) : m_file(file), m_random(seed) {}

    void damage() {
        const std::vector<stretch> all = find_stretches(std::as_bytes(m_file));
        for (int n = pick(1, 4); n > 0; --n) {
            const auto kind = static_cast<stretch_kind_t>(pick(0, 3));
            std::vector<stretch> of_kind;
            std::ranges::copy_if(all, std::back_inserter(of_kind),
                                 [=](const stretch& found) { return found.kind == kind; });
            if (!of_kind.empty())
                damage(of_kind);
        }
    }

private:
    // From first to last.
    template <typename T>
    T pick(T first, T last) {
        return std::uniform_int_distribution<T>(first, last)(m_random);
    }

    [[nodiscard]] bytes_t part(const stretch& of) const noexcept { return m_file.subspan(of.first, of.size); }

    bytes_t pick_stretch(std::span<const stretch> stretches) {
        return part(stretches[pick<std::size_t>(0, stretches.size() - 1)]);
    }

    void damage(std::span<const stretch> stretches) {
        const bytes_t target = pick_stretch(stretches);
        switch (pick(0, 5)) {
        case 0:
            return change_number(target);
        case 1:
            return shift(target);
        case 2: { // what another one has
            const bytes_t source = pick_stretch(stretches);
            std::copy_n(source.begin(), std::min(source.size(), target.size()), target.begin());
            return;
        }
        case 3: {
            unsigned char& byte = target[pick<std::size_t>(0, target.size() - 1)];
            byte = static_cast<unsigned char>(byte ^ 1U << pick(0U, 7U));
            return;
        }
        default:
            LLVMFuzzerMutate(target.data(), target.size(), target.size());
        }
    }

    // A number of one, two or four bytes becomes a little more or less, or one at the end of a range.
    void change_number(bytes_t target) {
        constexpr std::array<unsigned, 10> limits = {0,      1,      0x7f,       0xff,       0x7fff,
                                                     0x8000, 0xffff, 0x7fffffff, 0x80000000, 0xffffffff};
        const std::size_t size = std::min<std::size_t>(target.size(), std::size_t{1} << pick(0, 2));
        const std::size_t first = pick<std::size_t>(0, (target.size() - size) / size) * size;
        const bytes_t number = target.subspan(first, size);
        unsigned value = 0;
        for (std::size_t at = size; at > 0; --at)
            value = value << 8 | number[at - 1];
        value =
            pick(0, 1) == 0 ? limits[pick<std::size_t>(0, limits.size() - 1)] : value + pick(0U, 32U) - 16;
        for (std::size_t at = 0; at < size; ++at)
            number[at] = static_cast<unsigned char>(value >> 8 * at & 0xffU);
    }

    // Drops some bytes, or puts some of its own in, and makes up for them at the end.
    void shift(bytes_t target) {
        const bytes_t rest = target.subspan(pick<std::size_t>(0, target.size() - 1));
        const auto distance =
            static_cast<std::ptrdiff_t>(pick<std::size_t>(1, std::min<std::size_t>(rest.size(), 4)));
        if (pick(0, 1) == 0)
            std::rotate(rest.begin(), rest.begin() + distance, rest.end());
        else
            std::shift_right(rest.begin(), rest.end(), distance);
    }

    bytes_t m_file;
    std::mt19937 m_random;
};

} // namespace

// Now and then the file is cut or grows, wherever that may be.
extern "C" std::size_t LLVMFuzzerCustomMutator(unsigned char* data, std::size_t size, std::size_t most,
                                               unsigned seed) {
    if (seed % 16 == 0)
        return LLVMFuzzerMutate(data, size, most);
    damager({data, size}, seed).damage();
    return size;
}
