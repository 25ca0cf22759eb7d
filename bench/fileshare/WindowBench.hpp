// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quillane::bench {

/// Uploads the file in a share window and prints how often the window was drawn. Not zero when the upload failed.
int uploadInWindow(int argc, char** argv, const std::string& address, const std::string& file);

} // namespace quillane::bench
