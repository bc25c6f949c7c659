#pragma once

#include "conversion/edsdk.h"

// The time between EdsInitializeSDK and EdsTerminateSDK, which is called even when the start failed.
class sdk_session final {
public:
    sdk_session() noexcept : m_error(EdsInitializeSDK()) {}
    sdk_session(const sdk_session&) = delete;
    sdk_session& operator=(const sdk_session&) = delete;
    ~sdk_session() { EdsTerminateSDK(); }

    // What the start answered.
    [[nodiscard]] eds_error_t inq_error() const noexcept { return m_error; }

private:
    eds_error_t m_error;
};
