// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/LiveWriter.hpp"

namespace quillane::live {

namespace {

constexpr std::string_view document = R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" office:version="1.2"
 office:mimetype="application/vnd.oasis.opendocument.text"><office:body><office:text>
<text:p>one</text:p><text:p>two</text:p><text:p>three</text:p>
</office:text></office:body></office:document>)";

} // namespace

tl::expected<LiveWriter, std::string> LiveWriter::start(LiveDesktop& desktop, const std::string& language) {
    auto office = LiveOffice::start(desktop, {"document.fodt", document, "Writer"}, language);
    if (!office) {
        return tl::unexpected(office.error());
    }
    LiveWriter writer(std::move(*office));
    if (!waitUntil([&] { return writer.paragraph() == "one"; })) {
        return tl::unexpected(std::string("the document does not get the focus"));
    }
    return writer;
}

std::vector<std::string> LiveWriter::savedDirections() const {
    const auto saved = office_.saved();
    std::vector<std::string> result;
    for (const std::string paragraph : {"one", "two", "three"}) {
        result.push_back(paragraph + " " +
                         writingModeOf(saved, "<text:p text:style-name=\"([^\"]*)\">" + paragraph + "<"));
    }
    return result;
}

} // namespace quillane::live
