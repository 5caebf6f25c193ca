// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/GnomeCommandShortcuts.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#define G_SETTINGS_ENABLE_BACKEND
#include <gio/gsettingsbackend.h>

#include "platform/linux/glib/GlibPointers.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr auto listSchema = "org.gnome.settings-daemon.plugins.media-keys";
constexpr auto entrySchema = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr auto listKey = "custom-keybindings";
// Ours alone: the settings' own program numbers its entries.
constexpr auto ownPlace =
    "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vantorel/";

struct SchemaUnref {
  void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};

bool hasSchema(const char* name) {
  auto* source = g_settings_schema_source_get_default();
  if (source == nullptr) return false;
  return std::unique_ptr<GSettingsSchema, SchemaUnref>(
             g_settings_schema_source_lookup(source, name, TRUE)) != nullptr;
}

/// Where the library found nowhere to keep settings it keeps them for as long as this process runs.
bool areKept() {
  const ObjectPointer<GSettingsBackend> backend(g_settings_backend_get_default());
  return std::string_view(G_OBJECT_TYPE_NAME(backend.get())) != "GMemorySettingsBackend";
}

ObjectPointer<GSettings> ownEntry() {
  return ObjectPointer<GSettings>(g_settings_new_with_path(entrySchema, ownPlace));
}

std::vector<std::string> places() {
  const ObjectPointer<GSettings> list(g_settings_new(listSchema));
  const VariantPointer value(g_settings_get_value(list.get(), listKey));
  std::vector<std::string> all;
  for (gsize i = 0; i < g_variant_n_children(value.get()); ++i) {
    const VariantPointer each(g_variant_get_child_value(value.get(), i));
    all.emplace_back(g_variant_get_string(each.get(), nullptr));
  }
  return all;
}

bool setPlaces(const std::vector<std::string>& places) {
  std::vector<const gchar*> names;
  names.reserve(places.size() + 1);
  for (const auto& place : places) names.push_back(place.c_str());
  names.push_back(nullptr);
  const ObjectPointer<GSettings> list(g_settings_new(listSchema));
  return g_settings_set_strv(list.get(), listKey, names.data()) != FALSE;
}

struct Modifier {
  HotKeyModifiers mask;
  std::string_view name;
};

constexpr std::array modifiers = {
    Modifier{hotkeys::command, "<Super>"}, Modifier{hotkeys::shift, "<Shift>"},
    Modifier{hotkeys::option, "<Alt>"}, Modifier{hotkeys::control, "<Control>"}};

}  // namespace

std::unique_ptr<GnomeCommandShortcuts> GnomeCommandShortcuts::open() {
  // The library ends the process that asks for settings which are not installed.
  if (!hasSchema(listSchema) || !hasSchema(entrySchema) || !areKept()) return nullptr;
  return std::unique_ptr<GnomeCommandShortcuts>(new GnomeCommandShortcuts());
}

bool GnomeCommandShortcuts::isSet() const {
  const auto all = places();
  return std::find(all.begin(), all.end(), ownPlace) != all.end();
}

bool GnomeCommandShortcuts::set(const HotKeyCombination& keys, const std::string& command) {
  const auto entry = ownEntry();
  const bool written =
      g_settings_set_string(entry.get(), "name", "Vantorel") != FALSE &&
      g_settings_set_string(entry.get(), "command", command.c_str()) != FALSE &&
      g_settings_set_string(entry.get(), "binding", gnomeAccelerator(keys).c_str()) != FALSE;
  if (!written || isSet()) return written;
  auto all = places();
  all.emplace_back(ownPlace);
  return setPlaces(all);
}

bool GnomeCommandShortcuts::remove() {
  auto all = places();
  std::erase(all, ownPlace);
  if (!setPlaces(all)) return false;
  const auto entry = ownEntry();
  for (const char* key : {"name", "command", "binding"}) g_settings_reset(entry.get(), key);
  return true;
}

std::string gnomeAccelerator(const HotKeyCombination& keys) {
  std::string text;
  for (const auto& modifier : modifiers) {
    if ((keys.modifiers & modifier.mask) != 0) text += modifier.name;
  }
  return text + lowerCased(keys.label);
}

}  // namespace vantorel
