// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/tour/Tour.hpp"

#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace quillane::live {

void Tour::step(const std::string& name, const std::function<std::string()>& action) {
    std::ostringstream number;
    number << std::setw(2) << std::setfill('0') << ++count_;
    std::string fileName = number.str() + "-" + name + ".png";
    for (char& c : fileName) {
        c = c == ' ' || c == '/' ? '-' : c;
    }
    try {
        const std::string seen = action();
        mustSee(desktop_.takeScreenshot(folder_ / fileName), "a picture of the screen");
        std::cout << number.str() << "  " << name << ": " << seen << std::endl;
    } catch (const std::exception& problem) {
        std::cout << number.str() << "  " << name << ": FAILED, not seen: " << problem.what() << std::endl;
        (void)desktop_.takeScreenshot(folder_ / ("FAILED-" + fileName)); // the failure is reported either way
        throw;
    }
}

void mustSee(bool seen, const std::string& what) {
    if (!seen) {
        throw std::runtime_error(what);
    }
}

void mustSee(bool seen, const std::function<std::string()>& what) {
    if (!seen) {
        mustSee(false, what());
    }
}

} // namespace quillane::live
