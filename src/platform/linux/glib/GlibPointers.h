// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <memory>

namespace vantorel {

struct ObjectUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
struct VariantUnref {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
struct ErrorFree {
  void operator()(GError* error) const { g_error_free(error); }
};
struct TextFree {
  void operator()(gchar* text) const { g_free(text); }
};

template <class Object>
using ObjectPointer = std::unique_ptr<Object, ObjectUnref>;
using VariantPointer = std::unique_ptr<GVariant, VariantUnref>;
using ErrorPointer = std::unique_ptr<GError, ErrorFree>;
using TextPointer = std::unique_ptr<gchar, TextFree>;

}  // namespace vantorel
