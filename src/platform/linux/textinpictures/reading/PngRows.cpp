// SPDX-License-Identifier: MIT
// The PNG library leaves by longjmp where it meets damage: what stands between a setjmp and the
// calls it guards has no destructors.
#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>

#include "platform/linux/textinpictures/reading/PictureRows.h"

namespace vantorel {
namespace {

constexpr std::size_t signatureSize = 8;
constexpr std::uint64_t maxInterlacedPixels = 40'000'000;  // these are held in memory at once
constexpr std::size_t channels = 4;

struct Source {
  ByteView rest;
};

void readFromMemory(png_structp png, png_bytep to, std::size_t count) {
  auto& source = *static_cast<Source*>(png_get_io_ptr(png));
  if (count > source.rest.size()) png_error(png, "the picture ends early");
  std::memcpy(to, source.rest.data(), count);
  source.rest = source.rest.subspan(count);
}

[[noreturn]] void leave(png_structp png, png_const_charp /*message*/) { png_longjmp(png, 1); }

void ignore(png_structp /*png*/, png_const_charp /*message*/) {}

class PngPictureRows : public PictureRows {
 public:
  explicit PngPictureRows(ByteView bytes) : source_{bytes} {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, leave, ignore);
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngPictureRows() override { png_destroy_read_struct(&png_, &info_, nullptr); }
  PngPictureRows(const PngPictureRows&) = delete;
  PngPictureRows& operator=(const PngPictureRows&) = delete;

  /// False when the head cannot be read or says that the picture is too large.
  [[nodiscard]] bool open() {
    if (png_ == nullptr || info_ == nullptr || !readHead()) return false;
    if (!isReadableSize(width_, height_)) return false;
    if (isInterlaced_ && std::uint64_t{width_} * height_ > maxInterlacedPixels) return false;
    row_.resize(width_ * channels);
    return true;
  }

  [[nodiscard]] int width() const override { return static_cast<int>(width_); }
  [[nodiscard]] int height() const override { return static_cast<int>(height_); }

  [[nodiscard]] int read(int count, std::vector<std::uint32_t>& pixels) override {
    int done = 0;
    for (; done < count && next_ < height_; ++done, ++next_) {
      const unsigned char* row = nextRow();
      if (row == nullptr) {
        next_ = height_;
        break;
      }
      for (std::size_t x = 0; x < width_; ++x, row += channels) {
        const auto overWhite = [row](std::size_t channel) {
          const std::uint32_t alpha = row[3];
          return (row[channel] * alpha + 255 * (255 - alpha)) / 255;
        };
        pixels.push_back(overWhite(0) << 16U | overWhite(1) << 8U | overWhite(2));
      }
    }
    return done;
  }

 private:
  bool readHead() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_read_fn(png_, &source_, readFromMemory);
    constexpr png_alloc_size_t largestChunk = 8'000'000;
    png_set_chunk_malloc_max(png_, largestChunk);
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);
    png_read_info(png_, info_);
    width_ = png_get_image_width(png_, info_);
    height_ = png_get_image_height(png_, info_);
    png_set_expand(png_);
    png_set_strip_16(png_);
    png_set_gray_to_rgb(png_);
    png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
    isInterlaced_ = png_set_interlace_handling(png_) > 1;
    png_read_update_info(png_, info_);
    return png_get_rowbytes(png_, info_) == width_ * channels;
  }

  /// Null where the picture is damaged.
  const unsigned char* nextRow() {
    if (isInterlaced_) {
      if (whole_.empty()) {
        whole_.resize(row_.size() * height_);
        for (std::size_t y = 0; y < height_; ++y) rows_.push_back(&whole_[y * row_.size()]);
        if (!readWhole()) return nullptr;
      }
      return rows_[next_];
    }
    return readRow() ? row_.data() : nullptr;
  }
  bool readRow() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_read_row(png_, row_.data(), nullptr);
    return true;
  }
  bool readWhole() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_read_image(png_, rows_.data());
    return true;
  }

  Source source_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  std::uint32_t next_ = 0;
  bool isInterlaced_ = false;
  std::vector<unsigned char> row_;
  std::vector<unsigned char> whole_;
  std::vector<unsigned char*> rows_;
};

}  // namespace

std::unique_ptr<PictureRows> openPng(ByteView bytes) {
  if (bytes.size() < signatureSize ||
      png_sig_cmp(reinterpret_cast<png_const_bytep>(bytes.data()), 0, signatureSize) != 0)
    return nullptr;
  auto rows = std::make_unique<PngPictureRows>(bytes);
  if (!rows->open()) return nullptr;
  return rows;
}

}  // namespace vantorel
