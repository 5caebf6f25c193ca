// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XSettings.h"

#include <gtest/gtest.h>

#include <string>

namespace vantorel {
namespace {

enum class Order { little, big };

/// Writes settings as a manager does.
class Writer {
 public:
  explicit Writer(Order order) : order_(order) {}

  void number(std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
      const int shift = 8 * (order_ == Order::big ? size - 1 - i : i);
      bytes_ += static_cast<char>(value >> shift & 0xFFU);
    }
  }
  void text(const std::string& text) {
    bytes_ += text;
    while (bytes_.size() % 4 != 0) bytes_ += '\0';
  }
  void begin(std::uint32_t count) {
    bytes_ += order_ == Order::big ? '\1' : '\0';
    bytes_ += std::string(3, '\0');
    number(5, 4);
    number(count, 4);
  }
  void head(int kind, const std::string& name) {
    number(static_cast<std::uint32_t>(kind), 1);
    number(0, 1);
    number(static_cast<std::uint32_t>(name.size()), 2);
    text(name);
    number(3, 4);
  }
  void integer(const std::string& name, std::int32_t value) {
    head(0, name);
    number(static_cast<std::uint32_t>(value), 4);
  }
  void string(const std::string& name, const std::string& value) {
    head(1, name);
    number(static_cast<std::uint32_t>(value.size()), 4);
    text(value);
  }
  void colour(const std::string& name) {
    head(2, name);
    for (int i = 0; i < 4; ++i) number(0xFFFF, 2);
  }
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  Order order_;
  std::string bytes_;
};

std::string sample(Order order) {
  Writer writer(order);
  writer.begin(4);
  writer.string("Net/ThemeName", "HighContrast");
  writer.colour("Gtk/Color");
  writer.integer("Gtk/EnableAnimations", 0);
  writer.integer("Xft/DPI", -1);
  return writer.bytes();
}

TEST(XSettings, AreReadInBothByteOrders) {
  for (const auto order : {Order::little, Order::big}) {
    const auto settings = parseXSettings(bytesOf(sample(order)));
    EXPECT_EQ(settings.size(), 3U);
    EXPECT_EQ(settings.at("Net/ThemeName"), XSetting("HighContrast"));
    EXPECT_EQ(settings.at("Gtk/EnableAnimations"), XSetting(0));
    EXPECT_EQ(settings.at("Xft/DPI"), XSetting(-1));
  }
}

TEST(XSettings, CutAnywhereGiveWhatIsWhole) {
  const auto whole = sample(Order::little);
  std::size_t last = 0;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const auto count = parseXSettings(bytesOf(std::string_view(whole).substr(0, length))).size();
    EXPECT_GE(count, last);
    last = count;
  }
  EXPECT_EQ(last, 3U);
}

TEST(XSettings, WithLyingLengthsEndThere) {
  Writer writer(Order::little);
  writer.begin(0xFFFFFFFF);
  writer.integer("a", 1);
  writer.number(1, 1);
  writer.number(0, 1);
  writer.number(0xFFFF, 2);
  EXPECT_EQ(parseXSettings(bytesOf(writer.bytes())).size(), 1U);
}

TEST(XSettings, OfAnUnknownKindEndThere) {
  Writer writer(Order::little);
  writer.begin(2);
  writer.head(9, "what");
  writer.integer("a", 1);
  EXPECT_TRUE(parseXSettings(bytesOf(writer.bytes())).empty());
}

}  // namespace
}  // namespace vantorel
