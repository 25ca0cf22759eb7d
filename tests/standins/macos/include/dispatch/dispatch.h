// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Dispatch (developer.apple.com/documentation/dispatch/1452834-dispatch_async_f).

using dispatch_queue_t = struct OpaqueDispatchQueue*;
using dispatch_function_t = void (*)(void* context);

extern "C" {
dispatch_queue_t dispatch_get_main_queue();
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
}
