// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane {

/// Keeps what is in the memory of this process from core files and from other programs of its user: a crash dumps
/// nothing, and nobody without privileges may trace the process, read its memory or look into its folder of proc(5).
/// Programs that it starts may be traced again. Call it before anything secret is in memory.
void protectProcess();

} // namespace quillane
