// The steps of demosaicing, each over one row of tones, for the instruction set that Highway compiles it for.
//
// Missing greens come from "Gradient based threshold free color filter array interpolation" (I. Pekkucuksen,
// Y. Altunbasak, ICIP 2010): the difference of green and the other colour is estimated along the row and
// along the column, and averaged over four half lines, each weighted by how little the differences vary along
// it. The differences of red and blue then fill the other places with the same paper's 7x7 filter and with
// the weights of the greens; a median takes out lone colours.
//
// Every value comes from the same operations in the same order in every instruction set, without fused ones,
// so the picture does not depend on the machine.

#if defined(SDK_OPEN_DEMOSAIC_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef SDK_OPEN_DEMOSAIC_ROWS_INL_H_
#undef SDK_OPEN_DEMOSAIC_ROWS_INL_H_
#else
#define SDK_OPEN_DEMOSAIC_ROWS_INL_H_
#endif

#include <array>
#include <cstddef>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace sdk_open::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using lanes_t = hn::ScalableTag<float>;
using tones_t = hn::Vec<lanes_t>;

inline tones_t load(const float* from) {
    return hn::LoadU(lanes_t(), from);
}

inline tones_t all(float value) {
    return hn::Set(lanes_t(), value);
}

// Runs a body over columns a vector at a time; the last one may reach beyond the end.
template <typename Body>
void for_columns(std::ptrdiff_t first, std::ptrdiff_t last, Body body) {
    for (std::ptrdiff_t x = first; x < last; x += static_cast<std::ptrdiff_t>(hn::Lanes(lanes_t())))
        body(x);
}

// The lanes with green samples, when the first lane has this column.
inline hn::Mask<lanes_t> green_lanes(std::ptrdiff_t column, bool is_green_odd) {
    const hn::RebindToSigned<lanes_t> integers;
    const bool is_odd_green = (column % 2 != 0) != is_green_odd;
    const auto parity = hn::Add(hn::Iota(integers, 0), hn::Set(integers, is_odd_green ? 0 : 1));
    return hn::RebindMask(lanes_t(), hn::TestBit(parity, hn::Set(integers, 1)));
}

inline tones_t absolute_difference(tones_t a, tones_t b) {
    return hn::Abs(hn::Sub(a, b));
}

// How much a colour's own curvature says about the other colour between two samples of it.
constexpr float curvature_weight = 0.17F;

// The other colour at a sample, from its neighbours in a line and the sample's own curvature.
inline tones_t other_colour(tones_t before2, tones_t before, tones_t own, tones_t after, tones_t after2) {
    const tones_t mean = hn::Mul(hn::Add(before, after), all(0.5F));
    const tones_t curvature = hn::Sub(hn::Add(own, own), hn::Add(before2, after2));
    return hn::Add(mean, hn::Mul(curvature, all(curvature_weight)));
}

// Green minus the other colour along the row and along the column. tones: the rows -2 to 2 around this one.
inline void find_differences(const std::array<const float*, 5>& tones, bool is_green_odd, float* in_row,
                             float* in_column, std::ptrdiff_t first, std::ptrdiff_t last) {
    const float* const row = tones[2];
    for_columns(first, last, [&](std::ptrdiff_t x) {
        const auto green = green_lanes(x, is_green_odd);
        const tones_t own = load(row + x);
        const auto difference = [&](tones_t other) {
            return hn::IfThenElse(green, hn::Sub(own, other), hn::Sub(other, own));
        };
        hn::StoreU(difference(other_colour(load(row + x - 2), load(row + x - 1), own, load(row + x + 1),
                                           load(row + x + 2))),
                   lanes_t(), in_row + x);
        hn::StoreU(difference(other_colour(load(tones[0] + x), load(tones[1] + x), own, load(tones[3] + x),
                                           load(tones[4] + x))),
                   lanes_t(), in_column + x);
    });
}

// How much the differences vary along their own direction.
inline void find_row_gradients(const float* differences, float* gradients, std::ptrdiff_t first,
                               std::ptrdiff_t last) {
    for_columns(first, last, [&](std::ptrdiff_t x) {
        hn::StoreU(absolute_difference(load(differences + x - 1), load(differences + x + 1)), lanes_t(),
                   gradients + x);
    });
}

// The same for the column, summed over three columns. above, below: the rows of differences next to this one.
inline void find_column_gradients(const float* above, const float* below, float* gradients,
                                  std::ptrdiff_t first, std::ptrdiff_t last) {
    for_columns(first, last, [&](std::ptrdiff_t x) {
        const auto at = [&](std::ptrdiff_t column) {
            return absolute_difference(load(above + column), load(below + column));
        };
        hn::StoreU(hn::Add(hn::Add(at(x - 1), at(x)), at(x + 1)), lanes_t(), gradients + x);
    });
}

inline void add_rows(const std::array<const float*, 3>& rows, float* sums, std::ptrdiff_t first,
                     std::ptrdiff_t last) {
    for_columns(first, last, [&](std::ptrdiff_t x) {
        hn::StoreU(hn::Add(hn::Add(load(rows[0] + x), load(rows[1] + x)), load(rows[2] + x)), lanes_t(),
                   sums + x);
    });
}

constexpr int half_line = 5; // samples of a half line, the middle one included
constexpr int gradient_line = 4;

struct green_input {
    const float* row_gradients;                                       // summed over three rows
    std::array<const float*, 2 * gradient_line - 1> column_gradients; // the rows -3 to 3
    const float* row_differences;
    std::array<const float*, 2 * half_line - 1> column_differences; // the rows -4 to 4
};

// Weights of the differences to the left, the right, above and below; they add up to 1.
struct direction_weights {
    float* left;
    float* right;
    float* above;
    float* below;
};

// Green minus the other colour where that is what was sampled, of no meaning elsewhere; the weights
// everywhere.
inline void find_green(const green_input& in, const direction_weights& weights, float* differences,
                       std::ptrdiff_t first, std::ptrdiff_t last) {
    // Keeps weights even where nothing varies but noise.
    const tones_t least_gradient = all(0.12F);
    for_columns(first, last, [&](std::ptrdiff_t x) {
        const auto row_gradient = [&](std::ptrdiff_t offset) { return load(in.row_gradients + x + offset); };
        const auto column_gradient = [&](std::size_t row) { return load(in.column_gradients[row] + x); };
        const auto sum4 = [&](tones_t a, tones_t b, tones_t c, tones_t d) {
            return hn::Add(hn::Add(hn::Add(a, b), hn::Add(c, d)), least_gradient);
        };
        const tones_t row_here = row_gradient(0);
        const tones_t column_here = column_gradient(3);
        const tones_t left = sum4(row_gradient(-3), row_gradient(-2), row_gradient(-1), row_here);
        const tones_t right = sum4(row_gradient(3), row_gradient(2), row_gradient(1), row_here);
        const tones_t above = sum4(column_gradient(0), column_gradient(1), column_gradient(2), column_here);
        const tones_t below = sum4(column_gradient(6), column_gradient(5), column_gradient(4), column_here);

        // One over the square of each sum, all multiplied by the same: so one division does.
        const auto squared = [](tones_t a, tones_t b) {
            const tones_t product = hn::Mul(a, b);
            return hn::Mul(product, product);
        };
        const tones_t row_product = hn::Mul(left, right);
        const tones_t column_product = hn::Mul(above, below);
        const tones_t left_weight = squared(right, column_product);
        const tones_t right_weight = squared(left, column_product);
        const tones_t above_weight = squared(below, row_product);
        const tones_t below_weight = squared(above, row_product);
        const tones_t scale = hn::Div(
            all(1.0F), hn::Add(hn::Add(left_weight, right_weight), hn::Add(above_weight, below_weight)));

        // Weights of 4, 4, 3, 2 and 1 for the middle sample and those behind it.
        const auto line = [](auto sample) {
            tones_t run = hn::Add(sample(0), sample(1));
            tones_t sum = run;
            for (int distance = 2; distance < half_line; ++distance) {
                run = hn::Add(run, sample(distance));
                sum = hn::Add(sum, run);
            }
            return sum;
        };
        const auto in_row = [&](int offset) { return load(in.row_differences + x + offset); };
        const auto in_column = [&](int offset) {
            return load(in.column_differences[static_cast<unsigned>(offset + half_line - 1)] + x);
        };
        tones_t difference = hn::Mul(left_weight, line([&](int distance) { return in_row(-distance); }));
        difference =
            hn::Add(difference, hn::Mul(right_weight, line([&](int distance) { return in_row(distance); })));
        difference = hn::Add(difference,
                             hn::Mul(above_weight, line([&](int distance) { return in_column(-distance); })));
        difference = hn::Add(difference,
                             hn::Mul(below_weight, line([&](int distance) { return in_column(distance); })));
        constexpr float line_weights = 4 + 4 + 3 + 2 + 1;
        hn::StoreU(hn::Mul(difference, hn::Mul(scale, all(1 / line_weights))), lanes_t(), differences + x);
        hn::StoreU(hn::Mul(left_weight, scale), lanes_t(), weights.left + x);
        hn::StoreU(hn::Mul(right_weight, scale), lanes_t(), weights.right + x);
        hn::StoreU(hn::Mul(above_weight, scale), lanes_t(), weights.above + x);
        hn::StoreU(hn::Mul(below_weight, scale), lanes_t(), weights.below + x);
    });
}

// The difference of the colour that is sampled diagonally: red's at blue samples and blue's at red ones.
// differences: the rows -3, -1, 1 and 3 around this one.
inline void cross_differences(const std::array<const float*, 4>& differences, float* crossed,
                              std::ptrdiff_t first, std::ptrdiff_t last) {
    for_columns(first, last, [&](std::ptrdiff_t x) {
        const auto both = [&](std::size_t row, std::ptrdiff_t distance) {
            return hn::Add(load(differences[row] + x - distance), load(differences[row] + x + distance));
        };
        const tones_t near = hn::Add(both(1, 1), both(2, 1));
        const tones_t far = hn::Add(hn::Add(both(0, 1), both(3, 1)), hn::Add(both(1, 3), both(2, 3)));
        hn::StoreU(hn::Sub(hn::Mul(near, all(10.0F / 32)), hn::Mul(far, all(1.0F / 32))), lanes_t(),
                   crossed + x);
    });
}

struct colour_input {
    std::array<const float*, 3> own;     // rows -1 to 1 of differences where they were sampled
    std::array<const float*, 3> crossed; // the same of those found diagonally
    direction_weights weights;
};

// The differences of both colours everywhere: of the one that this row samples, and of the other.
inline void fill_differences(const colour_input& in, bool is_green_odd, float* of_row, float* of_other,
                             std::ptrdiff_t first, std::ptrdiff_t last) {
    for_columns(first, last, [&](std::ptrdiff_t x) {
        const auto green = green_lanes(x, is_green_odd);
        const tones_t left = load(in.weights.left + x);
        const tones_t right = load(in.weights.right + x);
        const tones_t above = load(in.weights.above + x);
        const tones_t below = load(in.weights.below + x);
        const auto average = [&](const auto& beside, const auto& over) {
            const tones_t in_row =
                hn::Add(hn::Mul(left, load(beside[1] + x - 1)), hn::Mul(right, load(beside[1] + x + 1)));
            const tones_t in_column =
                hn::Add(hn::Mul(above, load(over[0] + x)), hn::Mul(below, load(over[2] + x)));
            return hn::Add(in_row, in_column);
        };
        hn::StoreU(hn::IfThenElse(green, average(in.own, in.crossed), load(in.own[1] + x)), lanes_t(),
                   of_row + x);
        hn::StoreU(hn::IfThenElse(green, average(in.crossed, in.own), load(in.crossed[1] + x)), lanes_t(),
                   of_other + x);
    });
}

inline tones_t median3(tones_t a, tones_t b, tones_t c) {
    return hn::Max(hn::Min(a, b), hn::Min(hn::Max(a, b), c));
}

// Each column's values in three rows, put in order.
struct sorted_rows {
    float* least;
    float* middle;
    float* most;
};

inline void sort_columns(const std::array<const float*, 3>& rows, const sorted_rows& sorted,
                         std::ptrdiff_t first, std::ptrdiff_t last) {
    for_columns(first, last, [&](std::ptrdiff_t x) {
        const tones_t a = load(rows[0] + x);
        const tones_t b = load(rows[1] + x);
        const tones_t c = load(rows[2] + x);
        const tones_t lower = hn::Min(a, b);
        const tones_t upper = hn::Max(a, b);
        hn::StoreU(hn::Min(lower, c), lanes_t(), sorted.least + x);
        hn::StoreU(hn::Max(lower, hn::Min(upper, c)), lanes_t(), sorted.middle + x);
        hn::StoreU(hn::Max(upper, c), lanes_t(), sorted.most + x);
    });
}

// The median of the 3x3 values around a column.
inline tones_t median_at(const sorted_rows& sorted, std::ptrdiff_t x) {
    const auto around = [x](const float* row) {
        return std::array{load(row + x - 1), load(row + x), load(row + x + 1)};
    };
    const auto [least1, least2, least3] = around(sorted.least);
    const auto [middle1, middle2, middle3] = around(sorted.middle);
    const auto [most1, most2, most3] = around(sorted.most);
    return median3(hn::Max(hn::Max(least1, least2), least3), median3(middle1, middle2, middle3),
                   hn::Min(hn::Min(most1, most2), most3));
}

} // namespace sdk_open::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
