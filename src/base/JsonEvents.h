// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace vantorel {

/// Hears what a JSON text says, in its order. Each answers whether to go on: false ends the
/// reading, which then has failed.
class JsonEvents {
 public:
  virtual ~JsonEvents() = default;

  virtual bool null() = 0;
  virtual bool boolean(bool value) = 0;
  virtual bool integer(std::int64_t value) = 0;
  /// A number that is no integer of 64 bits, or is not written as one.
  virtual bool real(double value) = 0;
  /// Without its escapes; what they say may be half of a pair of surrogates.
  virtual bool text(std::string_view text) = 0;
  virtual bool beginObject() = 0;
  virtual bool key(std::string_view name) = 0;
  virtual bool endObject() = 0;
  virtual bool beginArray() = 0;
  virtual bool endArray() = 0;
};

}  // namespace vantorel
