// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane {

/// Runs the application's event loop ([NSApplication run]) until it has finished launching, and no longer: the event
/// that launched the application has then been handled, and the application can use the menu bar. Returns at once if it
/// has finished already. Main thread.
void finishLaunching();

} // namespace quillane
