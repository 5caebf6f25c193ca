#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/SyntheticInput.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/x11/X11ChordPresser.h"

namespace vantorel {

/// Keys pressed through the XTEST extension: they are real to every program, so they are pressed
/// only while the target has the keyboard. A key event that goes down stands for the whole press:
/// the chord that its flags make is pressed and let go at once, on a thread of its own, and the
/// modifier keys and releases around it need nothing more. So no modifier is ever left down.
class X11SyntheticInput : public SyntheticInput {
 public:
  /// `entries` outlives the result. Null when there is no X server.
  [[nodiscard]] static std::unique_ptr<X11SyntheticInput> open(const DesktopEntries& entries,
                                                               PrimaryOffer offerPrimary,
                                                               const std::string& display = {});
  ~X11SyntheticInput() override;

  [[nodiscard]] bool isTrusted(TrustPrompt prompt) override;
  [[nodiscard]] std::optional<EventSource> createEventSource() override;
  [[nodiscard]] std::optional<SyntheticKeyEvent> createKeyboardEvent(
      const EventSource& source, KeyCode keyCode, KeyDirection direction) override;
  void post(const SyntheticKeyEvent& event, ProcessId pid) override;

 private:
  X11SyntheticInput(std::unique_ptr<X11Connection> connection, const DesktopEntries& entries,
                    PrimaryOffer offerPrimary);

  X11ChordPresser presser_;
};

}  // namespace vantorel
