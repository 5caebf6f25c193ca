// SPDX-License-Identifier: MIT
#include "base/JsonWriter.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace vantorel {
namespace {

TEST(JsonWriter, PutsEachMemberOnALineOfItsOwn) {
  JsonWriter json;
  json.beginObject();
  json.key("none");
  json.beginArray();
  json.endArray();
  json.key("some");
  json.beginArray();
  json.integer(-7);
  json.boolean(true);
  json.beginObject();
  json.endObject();
  json.endArray();
  json.key("text");
  json.text("a");
  json.endObject();
  json.endLine();
  EXPECT_EQ(json.view(),
            "{\n  \"none\": [],\n  \"some\": [\n    -7,\n    true,\n    {}\n  ],\n"
            "  \"text\": \"a\"\n}\n");
}

TEST(JsonWriter, WritesNumbersSoThatTheyAreReadBackTheSame) {
  const std::pair<double, const char*> reals[] = {
      {1, "1.0"}, {-0.0, "-0.0"}, {0.1, "0.1"}, {1e300, "1e+300"}};
  for (const auto& [value, text] : reals) {
    JsonWriter json;
    json.real(value);
    EXPECT_EQ(json.view(), text);
  }
  JsonWriter json;
  json.integer(std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(json.view(), "-9223372036854775808");
}

TEST(JsonWriter, EscapesWhereverItStandsAmongPlainCharacters) {
  for (std::size_t place = 0; place < 20; ++place) {
    std::string text(20, 'x');
    text[place] = '\x1f';
    JsonWriter json;
    json.text(text);
    EXPECT_EQ(json.view(), '"' + text.substr(0, place) + "\\u001F" + text.substr(place + 1) + '"');
  }
}

TEST(JsonWriter, APlainTextStandsWhereItIsPutThoughTheMemoryGrows) {
  JsonWriter json;
  json.beginArray();
  for (int i = 0; i < 3; ++i) {
    char* const place = json.plainText(1000);
    std::fill(place, place + 1000, 'p');
  }
  json.endArray();
  const std::string text = '"' + std::string(1000, 'p') + '"';
  EXPECT_EQ(json.view(), "[\n  " + text + ",\n  " + text + ",\n  " + text + "\n]");
}

}  // namespace
}  // namespace vantorel
