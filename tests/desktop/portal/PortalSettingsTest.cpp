// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalSettings.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <array>
#include <memory>
#include <string>

#include "desktop/portal/ScriptedPortal.h"
#include "desktop/session/PrivateSession.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto desktopInterface = "org.gnome.desktop.interface";
constexpr auto extent = PortalAnswers::Extent::all;

class PortalSettingsTest : public testing::Test {
 protected:
  [[nodiscard]] bool await(const std::function<bool()>& condition) {
    return waitFor([&] {
      QCoreApplication::processEvents();
      dispatch_.runQueued();
      return condition();
    });
  }

  PrivateSession session_;
  int argumentCount_ = 1;
  std::string name_ = "test";
  std::array<char*, 2> arguments_{name_.data(), nullptr};
  QCoreApplication application_{argumentCount_, arguments_.data()};
  ManualDispatch dispatch_;
};

TEST_F(PortalSettingsTest, WithoutAPortalNothingIsKnownAndNobodyWaits) {
  bool asked = false;
  Portal portal(dispatch_, extent, Portal::Start::whenWanted, [&] { asked = true; });
  PortalSettings settings(portal);
  portal.waitUntilAsked();
  EXPECT_FALSE(settings.reduceMotion());
  EXPECT_EQ(settings.theme(), "");
}

TEST_F(PortalSettingsTest, WhatAPortalTellsAndWhatItBecomesIsKnown) {
  ScriptedPortal scripted;
  scripted.settings = {{"color-scheme", 1U},
                       {"contrast", 1U},
                       {"enable-animations", false},
                       {"gtk-theme", "Adwaita-dark"},
                       {"icon-theme", "Papirus"}};
  Portal portal(dispatch_, extent, Portal::Start::whenWanted, [] {});
  PortalSettings settings(portal);
  ASSERT_TRUE(await([&] { return settings.iconTheme() == "Papirus"; }));
  EXPECT_EQ(portal.answers().scheme, 1U);
  EXPECT_TRUE(settings.reduceMotion());
  EXPECT_TRUE(settings.reduceTransparency());
  EXPECT_EQ(settings.theme(), "Adwaita-dark");
  int changes = 0;
  const auto observation = settings.observe([&] { ++changes; });
  scripted.changeSetting(appearance, "color-scheme", QString("dark"));  // of another type
  scripted.changeSetting(appearance, "contrast", 0U);
  scripted.changeSetting(desktopInterface, "enable-animations", true);
  ASSERT_TRUE(await([&] { return !settings.reduceMotion(); }));
  EXPECT_FALSE(settings.reduceTransparency());
  EXPECT_EQ(portal.answers().scheme, 1U);
  EXPECT_GE(changes, 2);
}

TEST_F(PortalSettingsTest, APortalThatComesLaterIsAskedAndWhatItToldStays) {
  Portal portal(dispatch_, extent, Portal::Start::whenWanted, [] {});
  PortalSettings settings(portal);
  portal.waitUntilAsked();
  auto scripted = std::make_unique<ScriptedPortal>();
  scripted->settings = {{"gtk-theme", "Adwaita-dark"}};
  ASSERT_TRUE(await([&] { return settings.theme() == "Adwaita-dark"; }));
  scripted.reset();
  scripted = std::make_unique<ScriptedPortal>();
  ASSERT_TRUE(await([&] { return scripted->wasCalledLast("Read"); }));
  EXPECT_EQ(settings.theme(), "Adwaita-dark");
}

TEST_F(PortalSettingsTest, WhereTheXServerTellsTheRestColoursAloneAreAskedFor) {
  ScriptedPortal scripted;
  scripted.settings = {{"color-scheme", 2U}};
  Portal portal(dispatch_, PortalAnswers::Extent::colors, Portal::Start::whenWanted, [] {});
  ASSERT_TRUE(await([&] { return portal.answers().scheme == 2U; }));
  EXPECT_EQ(scripted.calls, (std::vector<std::string>{"Register", "Read"}));
}

}  // namespace
}  // namespace vantorel
