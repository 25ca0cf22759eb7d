// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane {

/// Runs the application's event loop ([NSApplication run]) until it has finished launching, and no longer: the event
/// that launched the application has then been handled, and the menu bar is the application's to use. Returns at once
/// when it has finished already. Main thread.
void finishLaunching();

} // namespace quillane
