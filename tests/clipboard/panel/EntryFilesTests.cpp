// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/EntryFiles.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "fakes/FakeMainQueue.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakeSerialQueue.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EntryFilesTest : public ::testing::Test {
protected:
    static core::ClipboardEntry entry(const std::string& url) {
        return core::ClipboardEntry::make(
            core::ClipboardKind::files, "", "", "",
            {{core::ClipboardRepresentation{std::string(core::pasteboardTypes::fileUrl), fakes::bytesOf(url)}}}, {});
    }

    void load() {
        fileQueue.wait();
        queue.runPosted();
    }

    live::TemporaryFolder disk;
    fakes::FakePasteboard pasteboard;
    fakes::FakeMainQueue queue;
    fakes::FakeSerialQueue fileQueue;
    EntryFiles files{queue, fileQueue, pasteboard.fileFinder()};
};

TEST_F(EntryFilesTest, PathsAreKnownAtOnceAndThoseOfReferencesOnceTheyAreFound) {
    const auto path = disk.file("note.txt");
    const auto named = entry(core::Url::fromFilePath(path).absoluteString());
    const auto referred = entry(pasteboard.referenceTo(path));
    EXPECT_THAT(files.paths(named), ElementsAre(path));
    EXPECT_THAT(files.paths(referred), IsEmpty());
    EXPECT_EQ(files.state(referred), EntryFiles::State::unknown);
    load();
    EXPECT_THAT(files.paths(named), ElementsAre(path));
    EXPECT_THAT(files.paths(referred), ElementsAre(path));
    EXPECT_EQ(files.state(referred), EntryFiles::State::present);
}

TEST_F(EntryFilesTest, ReferenceThatLeadsNowhereIsGone) {
    const auto referred = entry("file:///.file/id=1.2");
    static_cast<void>(files.state(referred));
    load();
    EXPECT_EQ(files.state(referred), EntryFiles::State::gone);
    EXPECT_THAT(files.paths(referred), IsEmpty());
}

TEST_F(EntryFilesTest, ReferenceToAFolderIsAFolder) {
    const auto referred = entry(pasteboard.referenceTo(disk.path()));
    static_cast<void>(files.state(referred));
    load();
    EXPECT_EQ(files.state(referred), EntryFiles::State::folder);
}

} // namespace
} // namespace quillane
