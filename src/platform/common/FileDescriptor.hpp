// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/FileDescriptor.hpp"

namespace quillane {

using core::FileDescriptor;

} // namespace quillane
