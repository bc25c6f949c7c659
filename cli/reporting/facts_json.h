#pragma once

#include "sdk/open/picture_facts.h"

#include <nlohmann/json.hpp>

// What is known of a picture as members of a JSON object; what is not known is left out.
void add_facts(nlohmann::ordered_json& json, const sdk_open::picture_facts& facts);

// The way back. Throws nlohmann::ordered_json::exception where a member has another type.
[[nodiscard]] sdk_open::picture_facts facts_of_json(const nlohmann::ordered_json& json);
