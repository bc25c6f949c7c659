#include "tests/conversion/sdk_double.h"

#include "tests/support/allocation_meter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace {

std::string joined(const auto&... parts) {
    std::ostringstream text;
    (text << ... << parts);
    return text.str();
}

std::string name_of(const __EdsObject* object) {
    const bool is_open = object != nullptr && object->is_open;
    EXPECT_TRUE(is_open) << "a null or released handle";
    return is_open ? joined('#', object->number) : "none";
}

} // namespace

sdk_double* sdk_double::current = nullptr;

sdk_double::sdk_double(answers_t answers, watch_t watch)
    : m_answers(std::move(answers)), m_watch(std::move(watch)) {
    current = this;
}

sdk_double::~sdk_double() {
    EXPECT_TRUE(m_calls.empty() || m_calls.back().starts_with("EdsTerminateSDK"));
    EXPECT_TRUE(std::ranges::none_of(m_objects, &__EdsObject::is_open));
    current = nullptr;
}

eds_error_t sdk_double::answer(std::string call, __EdsObject** new_object) {
    EXPECT_EQ(m_calls.empty(), call == "EdsInitializeSDK()") << call;
    const auto scripted = m_answers.find(m_calls.size() + 1);
    const eds_error_t error = scripted != m_answers.end() ? scripted->second : eds_ok;
    if (error != eds_ok) {
        call += joined(" -> error ", error);
    } else if (new_object != nullptr) {
        *new_object = &m_objects.emplace_back(__EdsObject{m_objects.size() + 1, true});
        call += " -> " + name_of(*new_object);
    }
    m_calls.push_back(std::move(call));
    if (m_watch)
        m_watch(m_calls.back());
    return error;
}

// What the double allocates is none of the memory that the code under test may run out of.

eds_error_t EdsInitializeSDK() {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().answer("EdsInitializeSDK()");
}

eds_error_t EdsTerminateSDK() {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().answer("EdsTerminateSDK()");
}

eds_error_t EdsCreateFileStream(const char* path, eds_disposition_t disposition, eds_access_t access,
                                __EdsObject** stream) {
    const allocation_meter::exemption exemption;
    EXPECT_TRUE(path != nullptr && *path != '\0');
    const std::string call = joined("EdsCreateFileStream(", path, ", ", static_cast<int>(disposition), ", ",
                                    static_cast<int>(access), ")");
    return sdk_double::inq_current().answer(call, stream);
}

eds_error_t EdsCreateImageRef(__EdsObject* stream, __EdsObject** image) {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().answer(joined("EdsCreateImageRef(", name_of(stream), ")"), image);
}

eds_error_t EdsSaveImage(__EdsObject* image, eds_target_t target, tagEdsSaveImageSetting settings,
                         __EdsObject* stream) {
    const allocation_meter::exemption exemption;
    EXPECT_TRUE(settings.jpeg_quality == 0 && settings.profile == nullptr && settings.reserved == 0);
    return sdk_double::inq_current().answer(
        joined("EdsSaveImage(", name_of(image), ", ", static_cast<int>(target), ", ", name_of(stream), ")"));
}

eds_error_t EdsRelease(__EdsObject* object) {
    const allocation_meter::exemption exemption;
    const std::string call = joined("EdsRelease(", name_of(object), ")");
    if (object != nullptr)
        object->is_open = false;
    return sdk_double::inq_current().answer(call);
}
