#include "platform/linux/glib/SessionBusAddress.h"

#include <array>
#include <cstdio>
#include <string_view>
#include <system_error>

namespace vantorel {
namespace {

bool isPlain(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         std::string_view("-_/.\\*").find(c) != std::string_view::npos;
}

/// A value within a bus address, where most characters are written as %xx.
std::string escaped(const std::string& value) {
  std::string result;
  for (const char c : value) {
    if (isPlain(c)) {
      result += c;
      continue;
    }
    std::array<char, 4> code{};
    std::snprintf(code.data(), code.size(), "%%%02x",
                  static_cast<unsigned>(static_cast<unsigned char>(c)));
    result += code.data();
  }
  return result;
}

}  // namespace

std::optional<std::string> sessionBusAddress(const EnvironmentLookup& lookup) {
  if (auto address = lookup("DBUS_SESSION_BUS_ADDRESS"); address && !address->empty()) {
    return address;
  }
  const auto runtime = XdgDirectories::fromEnvironment(lookup).runtime;
  if (!runtime) return std::nullopt;
  const auto socket = *runtime / "bus";
  std::error_code error;
  if (!std::filesystem::is_socket(socket, error)) return std::nullopt;
  return "unix:path=" + escaped(socket.string());
}

}  // namespace vantorel
