// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteboardContents.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/linux/windows/PasteboardTargets.h"

namespace vantorel {
namespace {

std::string textOfFiles(std::vector<std::filesystem::path> files) {
  return contentsOf(std::move(files)).string.value_or("none");
}

TEST(PasteboardContents, PathsStandOneOnEachLineAsTheyAre) {
  EXPECT_EQ(textOfFiles({"/a/b c.txt", "/it's $HOME\\n; שלום é.txt"}),
            "/a/b c.txt\n/it's $HOME\\n; שלום é.txt");
}

TEST(PasteboardContents, WhatATerminalWouldObeyIsQuoted) {
  EXPECT_EQ(textOfFiles({"/x\necho pwned>P\n"}), R"($'/x\012echo pwned>P\012')");
  EXPECT_EQ(textOfFiles({"/\x1B]0;t\x07"}), R"($'/\033]0;t\007')");
  EXPECT_EQ(textOfFiles({"/\x7F"}), R"($'/\177')");
  EXPECT_EQ(textOfFiles({"/\xC2\x85"}), R"($'/\302\205')");
  EXPECT_EQ(textOfFiles({"/\xC2\x9Bm"}), R"($'/\302\233m')");
}

TEST(PasteboardContents, NothingInAQuotedPathEndsTheQuotes) {
  EXPECT_EQ(textOfFiles({"/a'; echo \\\r; 'é"}), R"($'/a\047; echo \134\015; \047\303\251')");
}

TEST(PasteboardContents, OnlyTheTextIsQuoted) {
  const auto offer =
      offerOf(std::make_shared<const PasteboardContents>(contentsOf({"/x\ny", "/plain"})));
  const auto form = std::find_if(offer.forms.begin(), offer.forms.end(),
                                 [](const auto& each) { return each.target == targets::uriList; });
  ASSERT_NE(form, offer.forms.end());
  EXPECT_EQ(textOf(form->encode().bytes), "file:///x%0Ay\r\nfile:///plain\r\n");
}

}  // namespace
}  // namespace vantorel
