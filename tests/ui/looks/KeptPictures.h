// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <string>
#include <vector>

namespace vantorel {

/// Whether `actual` looks as the kept picture of that name does. Where it does not, what was drawn
/// and a picture of what differs are left in the build directory, and the answer says where.
[[nodiscard]] testing::AssertionResult looksAsKept(const QImage& actual, const std::string& name);

/// The names of the pictures that are kept, sorted.
[[nodiscard]] std::vector<std::string> keptPictures();

}  // namespace vantorel
