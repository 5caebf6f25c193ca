// SPDX-License-Identifier: MIT
#include "platform/Observers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vantorel {
namespace {

TEST(Observers, AreToldInTheOrderAddedUntilTheyEnd) {
  ChangeObservers observers;
  std::vector<int> told;
  auto first = observers.add([&] { told.push_back(1); });
  const auto second = observers.add([&] { told.push_back(2); });
  observers.notify();
  first.reset();
  observers.notify();
  EXPECT_EQ(told, (std::vector{1, 2, 2}));
}

TEST(Observers, MayEndThemselvesAndOthersWhileTold) {
  ChangeObservers observers;
  int told = 0;
  std::unique_ptr<Observation> first;
  std::unique_ptr<Observation> second;
  first = observers.add([&] {
    ++told;
    first.reset();
    second.reset();
  });
  second = observers.add([&] { ++told; });
  observers.notify();
  observers.notify();
  EXPECT_EQ(told, 1);
}

TEST(Observers, AreNotToldOfTheChangeThatBroughtThem) {
  ChangeObservers observers;
  int told = 0;
  std::unique_ptr<Observation> late;
  const auto first = observers.add([&] { late = observers.add([&] { ++told; }); });
  observers.notify();
  EXPECT_EQ(told, 0);
}

TEST(Observers, AnObservationMayOutliveThem) {
  std::unique_ptr<Observation> observation;
  {
    ChangeObservers observers;
    observation = observers.add([] {});
  }
  observation.reset();
}

TEST(Observers, AreToldTheNews) {
  Observers<const std::string&> observers;
  std::vector<std::string> told;
  const auto first = observers.add([&](const std::string& news) { told.push_back(news); });
  const auto second = observers.add([&](const std::string& news) { told.push_back(news + "!"); });
  observers.notify("news");
  EXPECT_EQ(told, (std::vector<std::string>{"news", "news!"}));
}

}  // namespace
}  // namespace vantorel
