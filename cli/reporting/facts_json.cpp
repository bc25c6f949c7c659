#include "cli/reporting/facts_json.h"

namespace {

// For facts to read and for facts to fill.
template <typename Facts, typename Visit>
void visit_members(Facts& facts, Visit visit) {
    visit("camera", facts.camera);
    visit("width", facts.width);
    visit("height", facts.height);
    visit("lens", facts.lens);
    visit("date", facts.date_time);
    visit("exposure_seconds", facts.exposure_seconds);
    visit("aperture", facts.aperture);
    visit("iso", facts.iso);
    visit("focal_length", facts.focal_length);
    visit("orientation", facts.orientation);
    visit("white_balance", facts.white_balance);
}

} // namespace

void add_facts(nlohmann::ordered_json& json, const sdk_open::picture_facts& facts) {
    visit_members(facts, [&json]<typename Value>(const char* name, const Value& value) {
        if (value != Value())
            json[name] = value;
    });
}

sdk_open::picture_facts facts_of_json(const nlohmann::ordered_json& json) {
    sdk_open::picture_facts facts;
    visit_members(facts, [&json](const char* name, auto& value) {
        if (const auto found = json.find(name); found != json.end())
            found->get_to(value);
    });
    return facts;
}
