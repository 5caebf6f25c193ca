// SPDX-License-Identifier: MIT
#include "platform/linux/glib/SessionBusAddress.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <map>

namespace vantorel {
namespace {

std::optional<std::string> addressIn(const std::map<std::string, std::string>& environment) {
  return sessionBusAddress([&](const char* name) -> std::optional<std::string> {
    const auto found = environment.find(name);
    if (found == environment.end()) return std::nullopt;
    return found->second;
  });
}

class SessionBusAddressTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "bus test,XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    runtime_ = name;
  }
  void TearDown() override { std::filesystem::remove_all(runtime_); }

  void listen() const {
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, (runtime_ / "bus").c_str(), sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    close(descriptor);
  }

  std::filesystem::path runtime_;
};

TEST_F(SessionBusAddressTest, IsWhatTheSessionSays) {
  EXPECT_EQ(addressIn({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/x"}, {"XDG_RUNTIME_DIR", "/run"}}),
            "unix:path=/x");
}

TEST_F(SessionBusAddressTest, IsTheSocketOfTheRuntimeDirectoryElse) {
  listen();
  std::string escaped = (runtime_ / "bus").string();
  escaped.replace(escaped.find(' '), 1, "%20");
  escaped.replace(escaped.find(','), 1, "%2C");
  EXPECT_EQ(addressIn({{"XDG_RUNTIME_DIR", runtime_.string()}}), "unix:path=" + escaped);
  EXPECT_EQ(addressIn({{"DBUS_SESSION_BUS_ADDRESS", ""}, {"XDG_RUNTIME_DIR", runtime_.string()}}),
            "unix:path=" + escaped);
}

TEST_F(SessionBusAddressTest, IsAbsentWithoutABus) {
  EXPECT_FALSE(addressIn({}));
  EXPECT_FALSE(addressIn({{"XDG_RUNTIME_DIR", runtime_.string()}}));
}

}  // namespace
}  // namespace vantorel
