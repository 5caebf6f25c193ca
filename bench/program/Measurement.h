// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace vantorel::bench {

// What measuring has in common under every window system.

/// Named samples in milliseconds.
using Samples = std::map<std::string, std::vector<double>>;
using Arguments = std::span<char* const>;

/// The argument at that place, a number; throws std::runtime_error when it is missing.
[[nodiscard]] std::size_t count(Arguments arguments, std::size_t place);
/// The contents of a file, which throws std::runtime_error when it has none.
[[nodiscard]] std::string contentsOf(const char* path);

/// Starts a program that ends when this process does, at the latest.
[[nodiscard]] pid_t startProgram(const char* path, const char* argument = nullptr);
/// Waits for its end; throws std::runtime_error when it is not one in order.
void waitForEnd(pid_t program);
/// Has it end by a signal, and waits.
void endProgram(pid_t program);

/// Writes one JSON object.
void print(const Samples& samples);

}  // namespace vantorel::bench
