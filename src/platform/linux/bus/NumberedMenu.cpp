// SPDX-License-Identifier: MIT
#include "platform/linux/bus/NumberedMenu.h"

#include <utility>

namespace vantorel {
namespace {

bool isSameRow(const MenuRow& one, const MenuRow& other) {
  if (one.title != other.title || one.action != other.action) return false;
  return one.representedObject == other.representedObject;
}

}  // namespace

bool NumberedMenu::setRows(std::vector<MenuRow> rows) {
  if (rows == rows_) return false;
  rows_ = std::move(rows);
  Entries entries;
  entries[root].children = number(rows_, entries);
  former_ = std::exchange(entries_, std::move(entries));
  ++revision_;
  return true;
}

std::vector<int> NumberedMenu::number(const std::vector<MenuRow>& rows, Entries& entries) {
  std::vector<int> ids;
  for (const MenuRow& row : rows) {
    const int id = numberOf(row, entries);
    ids.push_back(id);
    Entry& entry = entries[id];
    entry.row = row;
    entry.row.submenu.clear();
    auto children = number(row.submenu, entries);
    entries[id].children = std::move(children);
  }
  return ids;
}

int NumberedMenu::numberOf(const MenuRow& row, const Entries& taken) {
  for (const auto& [id, entry] : entries_) {
    if (id != root && isSameRow(entry.row, row) && !taken.contains(id)) return id;
  }
  return ++last_;
}

const NumberedMenu::Entry* NumberedMenu::entry(int id) const {
  const auto found = entries_.find(id);
  return found != entries_.end() ? &found->second : nullptr;
}

std::optional<MenuRow> NumberedMenu::chosen(int id) const {
  if (id == root) return std::nullopt;
  for (const Entries* entries : {&entries_, &former_}) {
    const auto found = entries->find(id);
    if (found != entries->end()) return found->second.row;
  }
  return std::nullopt;
}

}  // namespace vantorel
