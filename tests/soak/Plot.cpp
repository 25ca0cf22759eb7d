// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Plot.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <sstream>

namespace quillane::soak {
namespace {

constexpr double left = 70;
constexpr double width = 1'100;
constexpr double panelHeight = 180;
constexpr double panelGap = 50;
constexpr double top = 60;
constexpr double right = 200; ///< room for the names of the faults

constexpr std::array bandColors{"#e8c9a0", "#b9d7ea", "#cfe3b4", "#e7bcc6", "#d6c8e8", "#f1e3a1", "#c9c9c9", "#a9dcd0"};

struct Panel {
    const char* title;
    std::function<double(const Sample&)> value;
    bool isLogarithmic = false;
};

/// A round number of about a fifth of the range.
double stepOf(double range) {
    const double raw = std::max(range, 1e-9) / 5;
    const double power = std::pow(10, std::floor(std::log10(raw)));
    for (const double factor : {1, 2, 5}) {
        if (raw <= factor * power) {
            return factor * power;
        }
    }
    return 10 * power;
}

/// One panel's scale: a value's place in pixels from the panel's top.
class Scale {
public:
    Scale(const Panel& panel, const std::vector<Sample>& samples) : isLogarithmic_(panel.isLogarithmic) {
        for (const auto& sample : samples) {
            highest_ = std::max(highest_, panel.value(sample));
        }
        highest_ = isLogarithmic_ ? std::pow(10, std::ceil(std::log10(std::max(highest_, 10.0)))) : highest_ * 1.1 + 1;
    }

    [[nodiscard]] double place(double value) const {
        const double share = isLogarithmic_
                                 ? std::log10(std::max(value, lowest) / lowest) / std::log10(highest_ / lowest)
                                 : value / highest_;
        return panelHeight * (1 - std::clamp(share, 0.0, 1.0));
    }

    [[nodiscard]] std::vector<double> marks() const {
        std::vector<double> result;
        if (isLogarithmic_) {
            for (double value = lowest; value <= highest_ * 1.01; value *= 10) {
                result.push_back(value);
            }
        } else {
            const double step = stepOf(highest_);
            for (double value = 0; value <= highest_; value += step) {
                result.push_back(value);
            }
        }
        return result;
    }

private:
    static constexpr double lowest = 0.1; ///< of a logarithmic scale

    bool isLogarithmic_;
    double highest_ = 0;
};

class Drawing {
public:
    Drawing(const std::vector<Sample>& samples, const std::vector<FaultSpan>& faults)
        : samples_(samples), faults_(faults), end_(samples.empty() ? 1 : std::max(samples.back().seconds, 1.0)) {
        for (const auto& fault : faults) {
            colors_.emplace(fault.name, bandColors[colors_.size() % bandColors.size()]);
        }
    }

    std::string draw(const std::vector<Panel>& panels) {
        const double height = top + static_cast<double>(panels.size()) * (panelHeight + panelGap);
        out_ << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << left + width + right << "\" height=\"" << height
             << "\" font-family=\"sans-serif\" font-size=\"12\">\n<rect width=\"100%\" height=\"100%\" "
                "fill=\"white\"/>\n";
        double y = top;
        for (const auto& panel : panels) {
            drawPanel(panel, y);
            y += panelHeight + panelGap;
        }
        drawLegend();
        out_ << "</svg>\n";
        return out_.str();
    }

private:
    [[nodiscard]] double place(double seconds) const { return left + width * seconds / end_; }

    void text(double x, double y, const std::string& words, const char* anchor = "start") {
        out_ << "<text x=\"" << x << "\" y=\"" << y << "\" text-anchor=\"" << anchor << "\">" << words << "</text>\n";
    }

    void line(double x1, double y1, double x2, double y2) {
        out_ << "<line x1=\"" << x1 << "\" y1=\"" << y1 << "\" x2=\"" << x2 << "\" y2=\"" << y2
             << "\" stroke=\"#dddddd\"/>\n";
    }

    void drawPanel(const Panel& panel, double y) {
        for (const auto& fault : faults_) {
            const double begin = place(fault.begin);
            out_ << "<rect x=\"" << begin << "\" y=\"" << y << "\" width=\"" << std::max(place(fault.end) - begin, 1.0)
                 << "\" height=\"" << panelHeight << "\" fill=\"" << colors_.at(fault.name) << "\"/>\n";
        }
        const Scale scale(panel, samples_);
        for (const double mark : scale.marks()) {
            line(left, y + scale.place(mark), left + width, y + scale.place(mark));
            std::ostringstream number;
            number << mark;
            text(left - 8, y + scale.place(mark) + 4, number.str(), "end");
        }
        const double step = std::max(stepOf(end_ / 60), 1.0 / 6);
        for (double minutes = 0; minutes * 60 <= end_; minutes += step) {
            std::ostringstream number;
            number.precision(3);
            number << minutes;
            text(place(minutes * 60), y + panelHeight + 16, number.str(), "middle");
        }
        text(left, y - 8, panel.title);
        out_ << "<polyline fill=\"none\" stroke=\"#1f4e79\" points=\"";
        for (const auto& sample : samples_) {
            out_ << place(sample.seconds) << ',' << y + scale.place(panel.value(sample)) << ' ';
        }
        out_ << "\"/>\n";
    }

    void drawLegend() {
        double y = top;
        for (const auto& [name, color] : colors_) {
            out_ << "<rect x=\"" << left + width + 16 << "\" y=\"" << y << "\" width=\"14\" height=\"14\" fill=\""
                 << color << "\"/>\n";
            text(left + width + 36, y + 11, name);
            y += 22;
        }
        text(left, 24, "Quillane under load, minutes along the bottom, faults as bands");
    }

    const std::vector<Sample>& samples_;
    const std::vector<FaultSpan>& faults_;
    double end_;
    std::map<std::string, const char*> colors_;
    std::ostringstream out_;
};

} // namespace

std::string plot(const std::vector<Sample>& samples, const std::vector<FaultSpan>& faults) {
    const auto latency = [](const Sample& sample) {
        return sample.milliseconds.value_or(static_cast<double>(Samples::timeout.count()));
    };
    return Drawing(samples, faults)
        .draw({{"Memory of its own, MiB", &Sample::megabytes, false},
               {"Answer to a request, ms (logarithmic)", latency, true},
               {"Open descriptors", [](const Sample& sample) { return static_cast<double>(sample.descriptors); },
                false}});
}

} // namespace quillane::soak
