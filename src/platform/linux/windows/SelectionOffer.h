// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Bytes.h"

namespace vantorel {

/// Bytes and what keeps them alive. Without an owner there are none to be had.
struct OfferedBytes {
  std::shared_ptr<const void> owner;
  ByteView bytes;
};

/// instant: fetched where it is asked for; slow: takes milliseconds, so elsewhere.
enum class EncodingCost { instant, slow };

/// One form in which contents can be had.
struct OfferedForm {
  std::string target;
  std::string type;  // what the answer is labelled with
  EncodingCost cost = EncodingCost::instant;
  std::function<OfferedBytes()> encode;  // any thread
};

/// What a selection owner has to give; immutable.
struct SelectionOffer {
  /// A client asks by way of one of its windows that what it has be saved; `done` is called once,
  /// perhaps later, with whether it was. On the X thread, both.
  using Save = std::function<void(std::uint32_t window, std::function<void(bool saved)> done)>;

  std::vector<OfferedForm> forms;
  Save save = {};  // empty: there is nothing to do, and that is done
};

}  // namespace vantorel
