// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/x11pasteboard/MainLoop.h"
#include "desktop/x11pasteboard/PrivateXServer.h"
#include "desktop/x11pasteboard/Requestor.h"
#include "desktop/x11pasteboard/ScriptedOwner.h"
#include "fakes/FakeImageDecoder.h"
#include "platform/linux/x11/X11Pasteboard.h"

namespace vantorel {

/// An image whose forms are what the test says.
class MadeImage : public Image {
 public:
  MadeImage(Bytes png, Bytes jpeg)
      : png_(std::make_shared<const Bytes>(std::move(png))),
        jpeg_(std::make_shared<const Bytes>(std::move(jpeg))) {}
  [[nodiscard]] Size size() const override { return {2, 1}; }
  [[nodiscard]] std::shared_ptr<const Bytes> pngData() const override {
    ++pngAsked;
    return png_;
  }
  [[nodiscard]] std::shared_ptr<const Bytes> jpegData(double /*compression*/) const override {
    ++jpegAsked;
    return jpeg_;
  }
  mutable std::atomic<int> pngAsked = 0;
  mutable std::atomic<int> jpegAsked = 0;

 private:
  std::shared_ptr<const Bytes> png_;
  std::shared_ptr<const Bytes> jpeg_;
};

inline Bytes bytes(std::string_view text) {
  const auto view = bytesOf(text);
  return {view.begin(), view.end()};
}

/// `size` bytes that repeat nowhere near a piece's length.
inline Bytes pattern(std::size_t size) {
  Bytes made(size);
  std::uint32_t state = 12345;
  for (auto& byte : made) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<std::byte>('a' + (state >> 24U) % 26U);
  }
  return made;
}

class PasteboardFixture : public testing::Test {
 protected:
  using Milliseconds = std::chrono::duration<double, std::milli>;

  static void SetUpTestSuite() { server = std::make_unique<PrivateXServer>(); }
  static void TearDownTestSuite() { server.reset(); }

  PasteboardFixture() { open(); }

  void open(X11Pasteboard::Limits limits = {}) {
    pasteboard.reset();
    pasteboard = X11Pasteboard::open({loop, decoder}, server->display(), limits);
    if (!pasteboard) throw std::runtime_error("no pasteboard");
  }

  /// `owner` takes the clipboard, and the pasteboard has counted it.
  void copy(ScriptedOwner& owner) {
    const auto before = pasteboard->changeCount();
    owner.own();
    ASSERT_TRUE(loop.runUntil([&] {
      loop.runQueued();
      return pasteboard->changeCount() > before;
    }));
  }

  template <class Value, class Start>
  Value finished(Start start) {
    std::optional<Value> answer;
    start([&](Value value) { answer = std::move(value); });
    EXPECT_FALSE(answer) << "answered within the same turn";
    if (!loop.runUntil([&] { return answer.has_value(); })) {
      ADD_FAILURE() << "never answered";
      return Value();
    }
    return std::move(*answer);
  }

  using Types = std::optional<std::vector<std::string>>;
  using Text = std::optional<std::string>;
  using Data = std::optional<Bytes>;
  using Files = std::vector<std::filesystem::path>;
  using Picture = std::shared_ptr<const Image>;

  Types types() {
    return finished<Types>([&](auto done) { pasteboard->readTypes(now(), std::move(done)); });
  }
  Text string() {
    return finished<Text>([&](auto done) { pasteboard->readString(now(), std::move(done)); });
  }
  Data data(PasteboardDataType type) {
    return finished<Data>([&](auto done) { pasteboard->readData(now(), type, std::move(done)); });
  }
  Files files() {
    return finished<Files>([&](auto done) { pasteboard->readFileURLs(now(), std::move(done)); });
  }
  Picture image() {
    return finished<Picture>([&](auto done) { pasteboard->readImage(now(), std::move(done)); });
  }
  [[nodiscard]] Pasteboard::ChangeCount now() const { return pasteboard->changeCount(); }

  static std::string textIn(const std::optional<X11Property>& property) {
    return property ? std::string(textOf(property->bytes)) : "(nothing)";
  }

  static std::unique_ptr<PrivateXServer> server;
  MainLoop loop;
  FakeImageDecoder decoder;
  std::unique_ptr<X11Pasteboard> pasteboard;
};

inline std::unique_ptr<PrivateXServer> PasteboardFixture::server;

}  // namespace vantorel
