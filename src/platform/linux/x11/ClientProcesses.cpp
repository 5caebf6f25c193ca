// SPDX-License-Identifier: MIT
#include "platform/linux/x11/ClientProcesses.h"

#include <utility>

namespace vantorel {

ClientProcesses::ClientProcesses(X11Connection& connection) : connection_(connection) {
  if (connection_.extension(xcb_res_id) == nullptr) return;
  const auto version = connection_.reply(xcb_res_query_version_reply,
                                         xcb_res_query_version(connection_.xcb(), 1, 2));
  known_ = version && std::pair(version->server_major, version->server_minor) >=
                          std::pair<std::uint16_t, std::uint16_t>(1, 2);
}

ClientProcesses::Question ClientProcesses::ask(xcb_window_t window) const {
  if (!known_ || window == XCB_WINDOW_NONE) return std::nullopt;
  const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  return xcb_res_query_client_ids(connection_.xcb(), 1, &spec);
}

std::optional<ProcessId> ClientProcesses::answer(const Question& question) const {
  if (!question) return std::nullopt;
  const auto ids = connection_.reply(xcb_res_query_client_ids_reply, *question);
  if (!ids) return std::nullopt;
  for (auto it = xcb_res_query_client_ids_ids_iterator(ids.get()); it.rem > 0;
       xcb_res_client_id_value_next(&it)) {
    const bool tellsPid = (it.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
    if (!tellsPid || xcb_res_client_id_value_value_length(it.data) < 1) continue;
    const auto pid = static_cast<ProcessId>(*xcb_res_client_id_value_value(it.data));
    if (pid > 0) return pid;
  }
  return std::nullopt;
}

}  // namespace vantorel
