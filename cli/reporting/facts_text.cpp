#include "cli/reporting/facts_text.h"

#include "cli/reporting/number_text.h"

#include <array>

using sdk_open::picture_facts;

std::string exposure_text(const picture_facts& facts) {
    constexpr double shortest_in_tenths = 0.29;
    const double seconds = facts.exposure_seconds;
    if (!(seconds > 0))
        return {};
    return (seconds < shortest_in_tenths ? "1/" + fixed(1 / seconds, 0) : shortest(seconds, 1)) + " s";
}

std::string aperture_text(const picture_facts& facts) {
    return facts.aperture > 0 ? "f/" + shortest(facts.aperture, 1) : "";
}

std::string focal_length_text(const picture_facts& facts) {
    return facts.focal_length > 0 ? shortest(facts.focal_length, 1) + " mm" : "";
}

std::string iso_text(const picture_facts& facts) {
    return facts.iso > 0 ? std::to_string(facts.iso) : "";
}

std::string size_text(const picture_facts& facts) {
    return facts.width > 0 ? std::to_string(facts.width) + " x " + std::to_string(facts.height) : "";
}

std::string orientation_text(const picture_facts& facts) {
    constexpr std::array texts = {"",
                                  "upright",
                                  "mirrored",
                                  "turned 180 degrees",
                                  "turned 180 degrees and mirrored",
                                  "turned 90 degrees clockwise and mirrored",
                                  "turned 90 degrees clockwise",
                                  "turned 90 degrees counterclockwise and mirrored",
                                  "turned 90 degrees counterclockwise"};
    return facts.orientation < texts.size() ? texts[facts.orientation] : "";
}

std::string white_balance_text(const picture_facts& facts) {
    const auto [red, green, blue] = facts.white_balance;
    if (!(green > 0))
        return {};
    return "red " + fixed(red, 2) + ", green " + fixed(green, 2) + ", blue " + fixed(blue, 2);
}
