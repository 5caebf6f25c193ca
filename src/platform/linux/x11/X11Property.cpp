// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Property.h"

#include <algorithm>
#include <cstring>

namespace vantorel {

namespace {

// One request's worth. Most properties come whole in the first.
constexpr std::size_t sliceBytes = 262144;

X11Reply<xcb_get_property_reply_t> slice(const X11Connection& connection, xcb_window_t window,
                                         xcb_atom_t property, std::size_t offset,
                                         std::size_t length, AfterReading after) {
  // The server deletes only with the slice that leaves nothing behind.
  return connection.reply(
      xcb_get_property_reply,
      xcb_get_property(connection.xcb(), after == AfterReading::remove ? 1 : 0, window, property,
                       XCB_GET_PROPERTY_TYPE_ANY, static_cast<std::uint32_t>(offset / 4),
                       static_cast<std::uint32_t>((length + 3) / 4)));
}

void append(Bytes& bytes, const xcb_get_property_reply_t* reply) {
  const auto* data = static_cast<const std::byte*>(xcb_get_property_value(reply));
  bytes.insert(bytes.end(), data, data + xcb_get_property_value_length(reply));
}

}  // namespace

std::vector<std::uint32_t> X11Property::values32() const {
  if (format != 32) return {};
  std::vector<std::uint32_t> values(bytes.size() / 4);
  if (!values.empty()) std::memcpy(values.data(), bytes.data(), values.size() * 4);
  return values;
}

PropertyReading readProperty(const X11Connection& connection, xcb_window_t window,
                             xcb_atom_t property, std::size_t maximumBytes, AfterReading after) {
  auto reply = slice(connection, window, property, 0, std::min(sliceBytes, maximumBytes), after);
  if (!reply || reply->type == XCB_ATOM_NONE) return {};
  PropertyReading reading;
  reading.property.type = reply->type;
  reading.property.format = reply->format;
  const auto total =
      static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) + reply->bytes_after;
  if (total > maximumBytes) {
    if (after == AfterReading::remove) {
      xcb_delete_property(connection.xcb(), window, property);
    }
    reading.outcome = PropertyOutcome::tooLarge;
    return reading;
  }
  Bytes& bytes = reading.property.bytes;
  bytes.reserve(total);
  append(bytes, reply.get());
  while (reply->bytes_after > 0) {
    const auto before = bytes.size();
    reply = slice(connection, window, property, before, std::min(sliceBytes * 16, total - before),
                  after);
    // Gone or replaced by somebody in the meantime: what was read is of no use.
    if (!reply || reply->type != reading.property.type) return {};
    append(bytes, reply.get());
    if (bytes.size() == before || bytes.size() > total) return {};
  }
  reading.outcome = PropertyOutcome::read;
  return reading;
}

std::optional<std::string> stringProperty(const X11Connection& connection, xcb_window_t window,
                                          xcb_atom_t property, std::size_t maximumBytes) {
  const auto reading = readProperty(connection, window, property, maximumBytes);
  if (reading.outcome != PropertyOutcome::read || reading.property.format != 8) {
    return std::nullopt;
  }
  return std::string(textOf(reading.property.bytes));
}

std::vector<std::uint32_t> values32Property(const X11Connection& connection, xcb_window_t window,
                                            xcb_atom_t property, std::size_t maximumBytes) {
  const auto reading = readProperty(connection, window, property, maximumBytes);
  if (reading.outcome != PropertyOutcome::read) return {};
  return reading.property.values32();
}

}  // namespace vantorel
