#include "tests/conversion/sdk_double.h"

#include "tests/support/allocation_meter.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace {

std::string joined(const auto&... parts) {
    std::ostringstream text;
    (text << ... << parts);
    return text.str();
}

std::filesystem::path native_path(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return std::u8string(path.begin(), path.end());
}

} // namespace

sdk_double* sdk_double::current = nullptr;

sdk_double::sdk_double(answers_t answers, watch_t watch)
    : m_answers(std::move(answers)), m_watch(std::move(watch)) {
    current = this;
}

sdk_double::~sdk_double() {
    current = nullptr;
}

eds_error_t sdk_double::initialize() {
    expect(!m_is_session_begun, "a session in a session");
    m_is_session_begun = true;
    const eds_error_t error = answer("EdsInitializeSDK()");
    m_is_session_open = error == eds_ok;
    return error;
}

eds_error_t sdk_double::terminate() {
    expect(std::ranges::none_of(m_objects, &__EdsObject::is_open), "open handles at the end");
    m_is_session_open = false;
    const eds_error_t error = answer("EdsTerminateSDK()");
    m_is_session_begun = false;
    return error;
}

eds_error_t sdk_double::create_file_stream(const char* path, eds_disposition_t disposition,
                                           eds_access_t access, __EdsObject** stream) {
    const std::string path_text = path != nullptr ? path : "";
    expect(!path_text.empty(), "no path");
    const bool is_input = disposition == eds_disposition_t::open_existing;
    if (is_input)
        m_input_path = native_path(path_text);
    const std::string call = joined("EdsCreateFileStream(", path_text, ", ", static_cast<int>(disposition),
                                    ", ", static_cast<int>(access), ")");
    return answer_with_object(call, is_input ? kind_t::input : kind_t::output, stream);
}

eds_error_t sdk_double::create_image_ref(const __EdsObject* stream, __EdsObject** image) {
    expect_open(stream, kind_t::input);
    return answer_with_object(joined("EdsCreateImageRef(", name_of(stream), ")"), kind_t::image, image);
}

eds_error_t sdk_double::save_image(const __EdsObject* image, eds_target_t target,
                                   const tagEdsSaveImageSetting& settings, const __EdsObject* stream) {
    expect_open(image, kind_t::image);
    expect_open(stream, kind_t::output);
    const std::string setting_text =
        joined("{", settings.jpeg_quality, ", ", name_of(settings.profile), ", ", settings.reserved, "}");
    return answer(joined("EdsSaveImage(", name_of(image), ", ", static_cast<int>(target), ", ", setting_text,
                         ", ", name_of(stream), ")"));
}

eds_error_t sdk_double::release(__EdsObject* object) {
    const bool was_open = is_open(object);
    expect(was_open, joined("release of ", name_of(object)));
    if (was_open)
        object->is_open = false;
    return answer(joined("EdsRelease(", name_of(object), ")"));
}

eds_error_t sdk_double::answer(const std::string& call) {
    expect(m_is_session_begun, joined("outside a session: ", call));
    m_calls.push_back(call);
    const auto scripted = m_answers.find(m_calls.size());
    const eds_error_t error = scripted != m_answers.end() ? scripted->second : eds_ok;
    if (error != eds_ok)
        m_calls.back() += joined(" -> error ", error);
    if (m_watch)
        m_watch(m_calls.back());
    return error;
}

eds_error_t sdk_double::answer_with_object(const std::string& call, kind_t kind, __EdsObject** object) {
    expect(m_is_session_open, joined("without a session: ", call));
    expect(object != nullptr, "nowhere to put a handle");
    const eds_error_t error = answer(call);
    if (error != eds_ok || object == nullptr)
        return error;
    *object = &m_objects.emplace_back(__EdsObject{kind, true});
    m_calls.back() += joined(" -> ", name_of(*object));
    return error;
}

void sdk_double::expect(bool is_right, const std::string& misuse) {
    if (!is_right)
        m_misuses.push_back(misuse);
}

void sdk_double::expect_open(const __EdsObject* object, kind_t kind) {
    expect(is_open(object) && object->kind == kind, joined("wrong handle ", name_of(object)));
}

// A handle may be anything, so it is looked for before it is looked at.
bool sdk_double::is_open(const __EdsObject* object) const {
    return std::ranges::any_of(m_objects, [=](const auto& o) { return &o == object && o.is_open; });
}

std::string sdk_double::name_of(const __EdsObject* object) const {
    if (object == nullptr)
        return "null";
    const auto known = std::ranges::find_if(m_objects, [=](const auto& o) { return &o == object; });
    return known == m_objects.end() ? "unknown" : joined("#", known - m_objects.begin() + 1);
}

// What the double allocates is none of the memory that the code under test may run out of.

eds_error_t EdsInitializeSDK() {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().initialize();
}

eds_error_t EdsTerminateSDK() {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().terminate();
}

eds_error_t EdsCreateFileStream(const char* path, eds_disposition_t disposition, eds_access_t access,
                                __EdsObject** stream) {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().create_file_stream(path, disposition, access, stream);
}

eds_error_t EdsCreateImageRef(__EdsObject* stream, __EdsObject** image) {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().create_image_ref(stream, image);
}

eds_error_t EdsSaveImage(__EdsObject* image, eds_target_t target, tagEdsSaveImageSetting settings,
                         __EdsObject* stream) {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().save_image(image, target, settings, stream);
}

eds_error_t EdsRelease(__EdsObject* object) {
    const allocation_meter::exemption exemption;
    return sdk_double::inq_current().release(object);
}

std::string_view inq_sdk_failure_reason() noexcept {
    return "the script said so";
}
