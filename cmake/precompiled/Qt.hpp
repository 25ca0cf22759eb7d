// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Standard.hpp"

#include <QtWidgets/QtWidgets>
