#include "platform/ChangeObservers.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(ChangeObservers, AreToldInTheOrderAddedUntilTheyEnd) {
  ChangeObservers observers;
  std::vector<int> told;
  auto first = observers.add([&] { told.push_back(1); });
  const auto second = observers.add([&] { told.push_back(2); });
  observers.notify();
  first.reset();
  observers.notify();
  EXPECT_EQ(told, (std::vector{1, 2, 2}));
}

TEST(ChangeObservers, MayEndThemselvesAndOthersWhileTold) {
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

TEST(ChangeObservers, AreNotToldOfTheChangeThatBroughtThem) {
  ChangeObservers observers;
  int told = 0;
  std::unique_ptr<Observation> late;
  const auto first = observers.add([&] { late = observers.add([&] { ++told; }); });
  observers.notify();
  EXPECT_EQ(told, 0);
}

TEST(ChangeObservers, AnObservationMayOutliveThem) {
  std::unique_ptr<Observation> observation;
  {
    ChangeObservers observers;
    observation = observers.add([] {});
  }
  observation.reset();
}

}  // namespace
}  // namespace vantorel
