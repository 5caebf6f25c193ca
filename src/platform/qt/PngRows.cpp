// SPDX-License-Identifier: MIT
#include "platform/qt/PngRows.h"

#include <png.h>

#include <csetjmp>
#include <cstring>

#include "platform/qt/ImageLimits.h"

// The library leaves a function by a long jump when something is wrong. Functions that set the
// target of one hold nothing that has a destructor, and change no variable that is read behind it.

namespace vantorel {
namespace {

[[noreturn]] void fail(png_structp png, png_const_charp /*message*/) { png_longjmp(png, 1); }

void ignore(png_structp /*png*/, png_const_charp /*message*/) {}

}  // namespace

PngRows::PngRows(ByteView png)
    : rest_(png),
      png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)),
      info_(png_ != nullptr ? png_create_info_struct(png_) : nullptr) {}

PngRows::~PngRows() { png_destroy_read_struct(&png_, &info_, nullptr); }

bool PngRows::begin() {
  if (info_ == nullptr) return false;
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  readHeader();
  return true;
}

bool PngRows::read(std::uint8_t* row) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_read_row(png_, row, nullptr);
  return true;
}

void PngRows::readHeader() {
  constexpr int allButThePixels = -1;
  png_set_read_fn(png_, this, [](png_structp png, png_bytep destination, std::size_t length) {
    static_cast<PngRows*>(png_get_io_ptr(png))->take(destination, length);
  });
  // Profiles and texts may be packed small and unpack to much.
  png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, allButThePixels);
  // They have been compared with the bytes already.
  png_set_crc_action(png_, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
  png_set_user_limits(png_, maxImageSide, maxImageSide);
  png_read_info(png_, info_);
  isInterlaced_ = png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE;
  png_set_expand(png_);
  png_set_scale_16(png_);
  png_set_gray_to_rgb(png_);
  png_read_update_info(png_, info_);
  size_ = {static_cast<int>(png_get_image_width(png_, info_)),
           static_cast<int>(png_get_image_height(png_, info_))};
  pixelBytes_ = static_cast<PixelBytes>(png_get_channels(png_, info_));
}

void PngRows::take(std::uint8_t* destination, std::size_t length) {
  if (length > rest_.size()) png_error(png_, "cut");
  std::memcpy(destination, rest_.data(), length);
  rest_ = rest_.subspan(length);
}

}  // namespace vantorel
