// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillane::live {
class LiveBrowser;
class LiveDesktop;
} // namespace quillane::live

namespace quillane::bench {

/// Types chords into the page with the agent running, as a user does: prints when the page's script saw the direction,
/// and the processor time of the agent's main thread.
void measureAgent(live::LiveDesktop& desktop, const live::LiveBrowser& browser, int runs);

} // namespace quillane::bench
