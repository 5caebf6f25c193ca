// SPDX-License-Identifier: MIT
// Part of every test program: before anything else runs, its environment forgets the session of
// whoever started it, so that it finds the same on every machine, also in a debugger. A test that
// needs a bus starts one and names it.
//
// The addresses are of a kind that every library takes, and lead nowhere. Without an address
// libdbus would look for a bus where it chooses and would start one.

#include <cstdlib>
#include <initializer_list>

namespace {

const bool made = [] {
  for (const char* bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"}) {
    setenv(bus, "unix:path=/nonexistent/bus", 1);
  }
  for (const char* variable : {"AT_SPI_BUS_ADDRESS", "DBUS_STARTER_ADDRESS"}) unsetenv(variable);
  setenv("LC_ALL", "C.UTF-8", 1);
  return true;
}();

}  // namespace
