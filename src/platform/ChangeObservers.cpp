#include "platform/ChangeObservers.h"

#include <utility>

namespace vantorel {

class ChangeObservers::Registration : public Observation {
 public:
  explicit Registration(std::shared_ptr<Handler> handler) : handler_(std::move(handler)) {}

 private:
  std::shared_ptr<Handler> handler_;
};

std::unique_ptr<Observation> ChangeObservers::add(Handler handler) {
  std::erase_if(handlers_, [](const auto& each) { return each.expired(); });
  auto shared = std::make_shared<Handler>(std::move(handler));
  handlers_.push_back(shared);
  return std::make_unique<Registration>(std::move(shared));
}

void ChangeObservers::notify() {
  const auto told = handlers_;  // what is added meanwhile is not told of this
  for (const auto& each : told) {
    if (const auto handler = each.lock()) (*handler)();
  }
}

}  // namespace vantorel
