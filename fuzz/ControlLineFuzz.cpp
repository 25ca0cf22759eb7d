// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Lines on the control socket, from whatever program of the user connects: what is understood is understood the same
// way when it is sent on, and an answer fits into a line.
#include "Require.hpp"

#include "platform/common/control/ControlProtocol.hpp"

using namespace quillane;
using quillane::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view line(reinterpret_cast<const char*>(data), size);
    if (const auto request = control::decodeRequest(line)) {
        const auto sent = control::encode(*request);
        require(sent.find('\n') == std::string::npos);
        require(control::decodeRequest(sent) == request);
    }
    if (const auto reply = control::decodeReply(line)) {
        const auto sent = control::encode(*reply);
        require(sent.find('\n') == std::string::npos);
        require(control::decodeReply(sent) == reply);
    }
    return 0;
}
