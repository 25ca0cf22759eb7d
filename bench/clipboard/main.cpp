// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/Measurement.hpp"

#include <cstdlib>
#include <cstring>

/// With names of measurements as arguments, only those.
int main(int argc, char** argv) {
    using namespace quillane::bench;

    struct Measurement {
        const char* name;
        bool (*run)();
    };

    bool areMet = true;
    for (const auto& measurement : {Measurement{"memory", measureMemory}, Measurement{"digest", measureDigest},
                                    Measurement{"saving", measureSaving}, Measurement{"vault", measureWholeVault},
                                    Measurement{"search", measureSearch}}) {
        bool isChosen = argc == 1;
        for (int i = 1; i < argc; ++i) {
            isChosen = isChosen || std::strcmp(argv[i], measurement.name) == 0;
        }
        areMet = (!isChosen || measurement.run()) && areMet;
    }
    return areMet ? EXIT_SUCCESS : EXIT_FAILURE;
}
