// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "startup/Peer.hpp"

#include <algorithm>
#include <stdexcept>

namespace quillane::live {

const std::vector<Peer>& peers() {
    static const std::vector<Peer> both{
        {"quillane", {agentExecutable()}, {agentExecutable(), "status"}, "quillane"},
        {"copyq", {"copyq"}, {"copyq", "eval", "1"}, "copyq"},
    };
    return both;
}

const std::vector<Peer>& smallPeers() {
    static const std::vector<Peer> small{
        {"parcellite", {"parcellite"}, {"true"}, {}},
        {"xfce4-clipman", {"xfce4-clipman"}, {"true"}, {}},
        {"gpaste", {"/usr/libexec/gpaste/gpaste-daemon"}, {"true"}, {}},
        {"diodon", {"diodon"}, {"true"}, {}},
    };
    return small;
}

double median(std::vector<double> values) {
    must(!values.empty(), "a measurement");
    std::ranges::sort(values);
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void must(bool condition, const std::string& what) {
    if (!condition) {
        throw std::runtime_error("not seen: " + what);
    }
}

} // namespace quillane::live
