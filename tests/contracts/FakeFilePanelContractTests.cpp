// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FilePanelContract.hpp"
#include "fakes/FakeFilePanel.hpp"
#include "fakes/FakeWindowList.hpp"

namespace quillane {
namespace {

class FakeFilePanelDriver {
public:
    FilePanel& panel() { return fake_; }

    [[nodiscard]] bool isOpen() const { return fake_.open.has_value(); }

    [[nodiscard]] static std::filesystem::path file() { return "/tmp/file.txt"; }

    void confirm(const std::filesystem::path& path) { fake_.confirm(path); }

    void cancel() { fake_.cancel(); }

private:
    fakes::FakeFilePanel fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FilePanelContract, FakeFilePanelDriver);
} // namespace testing
} // namespace quillane
