// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/fileshare/FileExaminer.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <vector>

namespace quillane::testing {

/// What every FileExaminer promises. The driver has:
///
///     core::FileExaminer examiner();
///     void goAway();                            // the disk does not answer from now on
///     void comeBack();                          // the disk answers what it was asked meanwhile
///     bool waitUntil(std::function<bool()>);    // lets the world go on; false when it takes too long
template <typename Driver>
class FileExaminerContract : public ::testing::Test {
protected:
    void examine(const core::Url& file) {
        driver.examiner()(file, [this](const core::ExaminedFile& answer) { answers.push_back(answer); });
    }

    Driver driver;
    live::TemporaryFolder files;
    std::vector<core::ExaminedFile> answers;
};

TYPED_TEST_SUITE_P(FileExaminerContract);

TYPED_TEST_P(FileExaminerContract, OrdinaryAnswersComeInsideTheCall) {
    this->examine(this->files.url("file.txt", "12345"));
    ASSERT_EQ(this->answers.size(), 1U);
    EXPECT_EQ(this->answers[0], (core::SendableFile{this->files.path() / "file.txt", 5}));
    this->examine(core::Url::fromFilePath(this->files.path()));
    EXPECT_EQ(this->answers.at(1), core::ExaminedFile(tl::unexpected(core::FileShareError::notRegularFile)));
    this->examine(core::Url::fromFilePath(this->files.path() / "missing"));
    EXPECT_EQ(this->answers.at(2), core::ExaminedFile(tl::unexpected(core::FileShareError::unreadableFile)));
}

TYPED_TEST_P(FileExaminerContract, AnswerOfADiskThatHangsComesLaterAndOnce) {
    this->driver.goAway();
    this->examine(this->files.url("file.txt", "12345"));
    EXPECT_TRUE(this->answers.empty());
    this->driver.comeBack();
    ASSERT_TRUE(this->driver.waitUntil([this] { return !this->answers.empty(); }));
    this->examine(this->files.url("other.txt", "1"));
    ASSERT_EQ(this->answers.size(), 2U);
    EXPECT_EQ(this->answers[0]->size, 5U);
    EXPECT_EQ(this->answers[1]->size, 1U);
}

REGISTER_TYPED_TEST_SUITE_P(FileExaminerContract, OrdinaryAnswersComeInsideTheCall,
                            AnswerOfADiskThatHangsComesLaterAndOnce);

} // namespace quillane::testing
