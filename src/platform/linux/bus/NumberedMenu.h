// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/MenuRow.h"

namespace vantorel {

/// A menu whose rows have numbers by which another program names them. A row keeps its number as
/// long as it stays in the menu; a number is never given twice.
class NumberedMenu {
 public:
  static constexpr int root = 0;

  /// One row, without those below it, which are named by their numbers.
  struct Entry {
    MenuRow row;
    std::vector<int> children;
  };

  /// Whether that has changed the menu.
  bool setRows(std::vector<MenuRow> rows);

  /// Grows with each change.
  [[nodiscard]] unsigned revision() const { return revision_; }
  /// Null for a number that is not in the menu. The root has an empty row.
  [[nodiscard]] const Entry* entry(int id) const;
  /// The row with that number, also when it has left the menu with the last change: the user may
  /// still be looking at the former menu.
  [[nodiscard]] std::optional<MenuRow> chosen(int id) const;

 private:
  using Entries = std::map<int, Entry>;

  [[nodiscard]] std::vector<int> number(const std::vector<MenuRow>& rows, Entries& entries);
  [[nodiscard]] int numberOf(const MenuRow& row, const Entries& taken);

  std::vector<MenuRow> rows_;
  Entries entries_ = {{root, {}}};
  Entries former_;
  int last_ = root;
  unsigned revision_ = 1;
};

}  // namespace vantorel
