// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillane::live {
class LiveBrowser;
class LiveDesktop;
} // namespace quillane::live

namespace quillane::bench {

/// Types chords into the page with the agent running, as a user does: prints when the page's script saw the direction,
/// and how much time the agent's main thread had on a processor.
void measureAgent(live::LiveDesktop& desktop, const live::LiveBrowser& browser, int runs);

} // namespace quillane::bench
