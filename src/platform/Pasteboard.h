// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "platform/Announcer.h"
#include "platform/Image.h"
#include "platform/Workspace.h"

namespace vantorel {

/// One text with its richer forms, offered together.
struct PasteboardItem {
  std::string string;  // valid UTF-8
  std::optional<Bytes> rtf;
  std::optional<Bytes> html;
};

enum class PasteboardDataType { rtf, html };

/// The desktop's general pasteboard.
///
/// Main thread throughout; no operation ever waits for another program. A read answers through
/// its completion, on the main queue, exactly once, in a later turn. It belongs to the change count
/// it was asked for: once the contents have changed, the owner died, refused, stayed silent for 5 s
/// before or within its answer, or the format is larger than 64 MiB, it answers "nothing there". A
/// slow answer that keeps coming is waited for. Once an owner stayed silent about a form that it
/// offers, or the form was too large, whatever is asked of that change later answers "nothing
/// there" at once, so that a lesser form does not pass for what was copied; a form that was refused
/// or is damaged gives way to the next. The contents that this process wrote itself are read
/// without leaving the process.
class Pasteboard : public Announcer {
 public:
  template <class Value>
  using Completion = std::function<void(Value)>;
  using ChangeCount = std::int64_t;

  /// Grows by at least one with every change of the contents by anyone. A write or clear through
  /// this interface has been counted when it returns, and is not counted again later. The end of an
  /// owner is no change. Cheap: reads a number.
  [[nodiscard]] virtual ChangeCount changeCount() const = 0;

  /// Whether this process wrote the contents of that change through this interface.
  [[nodiscard]] virtual bool wroteContents(ChangeCount change) const = 0;

  /// The process that owned the contents when that change by another program was counted. Absent
  /// when it cannot be told, and once there was a newer change. Cheap: looks it up.
  [[nodiscard]] virtual std::optional<ProcessId> ownerProcess(ChangeCount change) const = 0;

  /// Whether a bridge between two window systems owned the contents when that change was counted:
  /// they come from where this desktop's windows tell nothing, so none of them is their source.
  /// False once there was a newer change. Cheap: looks it up.
  [[nodiscard]] virtual bool isBridged(ChangeCount change) const = 0;

  /// Called on the main queue soon after another program changed the contents. Changes that follow
  /// each other at once may be announced together. Replaces the previous handler; empty: none.
  virtual void setChangeHandler(std::function<void()> handler) = 0;

  /// Called on the main queue when the program that owned the contents of that change has ended
  /// and nobody took over: the contents are gone although nobody cleared them.
  virtual void setOwnerExitHandler(std::function<void(ChangeCount)> handler) = 0;

  /// Called on the main queue when the program that owns the contents of that change asks for them
  /// to be kept, since it is about to end. Whoever is asked writes them to this pasteboard, or does
  /// not, and calls `done` on the main thread, perhaps later; dropping it says the same. That
  /// program then hears that they were kept if this process owns contents by then, and goes on to
  /// end. While there is a handler this process takes such requests, where no other program does.
  /// Replaces the previous handler; empty: none, and nobody is asked any more when this returns.
  using SaveHandler = std::function<void(ChangeCount, std::function<void()> done)>;
  virtual void setSaveHandler(SaveHandler handler) = 0;

  /// The types on offer, under the platform's names; a marker that this platform spells
  /// differently comes under its "org.nspasteboard." name. Absent: the owner did not say, so
  /// nothing may be read.
  virtual void readTypes(ChangeCount change,
                         Completion<std::optional<std::vector<std::string>>> completion) = 0;

  /// The plain text, as valid UTF-8 (broken sequences become U+FFFD). Absent: no plain text;
  /// an empty text that was offered is an empty string.
  virtual void readString(ChangeCount change,
                          Completion<std::optional<std::string>> completion) = 0;

  virtual void readData(ChangeCount change, PasteboardDataType type,
                        Completion<std::optional<Bytes>> completion) = 0;

  /// Paths of the local files on offer, in order; empty when there are none.
  virtual void readFileURLs(ChangeCount change,
                            Completion<std::vector<std::filesystem::path>> completion) = 0;

  /// The image on offer, decoded away from the main thread, its PNG form ready (and, where that
  /// is larger than the largest image the program keeps, its JPEG form too). Null: none.
  virtual void readImage(ChangeCount change,
                         Completion<std::shared_ptr<const Image>> completion) = 0;

  /// Each of these makes this process the owner of the contents, replaces them whole, and answers
  /// whether that succeeded. The contents are served by the platform side also while the main
  /// thread is busy.
  [[nodiscard]] virtual bool writeItem(PasteboardItem item) = 0;
  [[nodiscard]] virtual bool writeString(std::string string) = 0;
  [[nodiscard]] virtual bool writeImage(std::shared_ptr<const Image> image) = 0;
  /// Absolute paths; refuses an empty list.
  [[nodiscard]] virtual bool writeFileURLs(const std::vector<std::filesystem::path>& paths) = 0;
  /// Leaves the pasteboard empty.
  virtual void clearContents() = 0;
};

}  // namespace vantorel
