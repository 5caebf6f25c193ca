#include "platform/linux/x11/ActivationOrder.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(ActivationOrder, PutsTheLastFirst) {
  ActivationOrder order;
  order.note(1);
  order.note(2);
  EXPECT_LT(order.rank(2), order.rank(1));
  order.note(1);
  EXPECT_LT(order.rank(1), order.rank(2));
}

TEST(ActivationOrder, PutsWhatNeverWasInFrontLast) {
  ActivationOrder order;
  for (std::uint32_t window = 1; window <= 1000; ++window) order.note(window);
  EXPECT_GT(order.rank(5000), order.rank(900));
  EXPECT_EQ(order.rank(1), order.rank(5000)) << "forgotten";
}

}  // namespace
}  // namespace vantorel
